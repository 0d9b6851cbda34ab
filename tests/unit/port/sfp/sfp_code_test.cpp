#include "port/sfp/sfp_code.h"

#include <gtest/gtest.h>

namespace {

constexpr SfpCode kBits[] = {{0x04, "four"}, {0x01, "one"}, {0x02, " "}, {0x30, "both"}, {0x0100, "high"}};

std::string BitTexts(std::uint16_t bits) {
  JoinedTexts texts(", ");
  texts.AddBits(kBits, bits);
  return texts.Text();
}

TEST(JoinedTexts, BitsAreInTheOrderOfTheTable) {
  EXPECT_EQ(BitTexts(0x0000), "");
  EXPECT_EQ(BitTexts(0x0001), "one");
  EXPECT_EQ(BitTexts(0x0105), "four, one, high");
}

TEST(JoinedTexts, RowOfSeveralBitsIsThereOnce) {
  EXPECT_EQ(BitTexts(0x0010), "both");
  EXPECT_EQ(BitTexts(0x0030), "both");
}

TEST(JoinedTexts, BlankTextsAddNothing) {
  EXPECT_EQ(BitTexts(0x0002), "");
  EXPECT_EQ(BitTexts(0x0003), "one");
  JoinedTexts texts("/");
  for (const char* text : {"", "a", "  ", "b ", ""}) texts.Add(text);
  EXPECT_EQ(texts.Text(), "a/b ");
}

TEST(TextOfValue, IsThatOfTheFirstRowWithTheValue) {
  constexpr SfpCode kCodes[] = {{0x07, "seven"}, {0x07, "seven again"}, {0xff, "all"}};
  EXPECT_EQ(TextOfValue(kCodes, 0x07), "seven");
  EXPECT_EQ(TextOfValue(kCodes, 0xff), "all");
  EXPECT_EQ(TextOfValue(kCodes, 0x06), "");
  EXPECT_EQ(TextOfValue({}, 0x00), "");
}

}  // namespace
