#include "diag/test_words.h"

#include <gtest/gtest.h>

namespace {

TEST(ReadDecimal, ReadsTheNumberThatAWordBeginsWith) {
  const Words words = {"7", "007", "-7", "+7", " 7", "7x", "7.5", "0x10", "x7", "", "-"};
  const std::int64_t numbers[] = {7, 7, -7, 7, 7, 7, 7, 0, 0, 0, 0};
  for (std::size_t i = 0; i < words.size(); ++i) EXPECT_EQ(ReadDecimal(words, i), numbers[i]) << words[i];
}

TEST(ReadDecimal, MissingWordIsZero) {
  EXPECT_EQ(ReadDecimal({}, 0), 0);
  EXPECT_EQ(ReadDecimal({"1"}, 1), 0);
}

TEST(ReadDecimal, NumbersBeyondSixtyFourBitsEndAtTheLimits) {
  const Words words = {"9223372036854775807", "9223372036854775808", "-9223372036854775808",
                       "-9223372036854775809", std::string(5000, '9')};
  EXPECT_EQ(ReadDecimal(words, 0), INT64_MAX);
  EXPECT_EQ(ReadDecimal(words, 1), INT64_MAX);
  EXPECT_EQ(ReadDecimal(words, 2), INT64_MIN);
  EXPECT_EQ(ReadDecimal(words, 3), INT64_MIN);
  EXPECT_EQ(ReadDecimal(words, 4), INT64_MAX);
}

TEST(ReadCount, TakesOneToTheMaximum) {
  std::uint32_t value = 0;
  EXPECT_TRUE(ReadCount({"1"}, 0, 65535, value));
  EXPECT_EQ(value, 1u);
  EXPECT_TRUE(ReadCount({"65535"}, 0, 65535, value));
  EXPECT_EQ(value, 65535u);
  EXPECT_TRUE(ReadCount({"4294967295"}, 0, UINT32_MAX, value));
  EXPECT_EQ(value, UINT32_MAX);
}

TEST(ReadCount, LeavesTheValueAloneForAnyOther) {
  for (const char* word :
       {"0", "65536", "-1", "", "x", "4294967297", "-4294967295", "18446744073709551617"}) {
    std::uint32_t value = 123;
    EXPECT_FALSE(ReadCount({word}, 0, 65535, value)) << word;
    EXPECT_EQ(value, 123u) << word;
  }
}

}  // namespace
