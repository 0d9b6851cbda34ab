#include "diag/diagnostic_words.h"

#include <gtest/gtest.h>

#include "support/unit_command_run.h"

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

StatusCode ReadCountOf(const char* word, std::uint32_t maximum, std::uint32_t& value) {
  const TestRun test({word});
  return ReadCount(test.run, 0, "count", maximum, value);
}

TEST(ReadCount, TakesOneToTheMaximum) {
  std::uint32_t value = 0;
  EXPECT_EQ(ReadCountOf("1", 65535, value), kSuccess);
  EXPECT_EQ(value, 1u);
  EXPECT_EQ(ReadCountOf("65535", 65535, value), kSuccess);
  EXPECT_EQ(value, 65535u);
  EXPECT_EQ(ReadCountOf("4294967295", UINT32_MAX, value), kSuccess);
  EXPECT_EQ(value, UINT32_MAX);
}

TEST(ReadCount, LeavesTheValueAloneForAnyOther) {
  for (const char* word :
       {"0", "65536", "-1", "", "x", "4294967297", "-4294967295", "18446744073709551617"}) {
    std::uint32_t value = 123;
    EXPECT_EQ(ReadCountOf(word, 65535, value), kInvalidParameter) << word;
    EXPECT_EQ(value, 123u) << word;
  }
}

}  // namespace
