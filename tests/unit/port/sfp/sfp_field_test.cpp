#include "port/sfp/sfp_field.h"

#include <gtest/gtest.h>

namespace {

constexpr SfpField kTable[] = {
    {kNoOffset, 0, FIELD_HEADING, "Heading"}, {8, 4, FIELD_HEX4, "Four"},
    {12, 1, FIELD_HEX_DUMP, "Twice"},         {20, 16, FIELD_ASCII, "Text"},
    {40, 1, FIELD_HEX_DUMP, "Twice"},
};

TEST(RangeNamed, IsThatOfTheField) {
  constexpr SfpRange kText = RangeNamed(kTable, "Text");
  EXPECT_EQ(kText.offset, 20);
  EXPECT_EQ(kText.size, 16);
}

TEST(RangeNamed, TakesNameAndSuffixAsOneName) {
  constexpr SfpRange kText = RangeNamed(kTable, "Te", "xt");
  EXPECT_EQ(kText.offset, 20);
}

TEST(NumberNamed, IsWhereTheFirstFieldOfTheNameIs) {
  constexpr SfpNumber<std::uint32_t> kFour = NumberNamed<std::uint32_t>(kTable, "Four");
  constexpr SfpNumber<std::uint8_t> kTwice = NumberNamed<std::uint8_t>(kTable, "Twice");
  EXPECT_EQ(kFour.offset, 8);
  EXPECT_EQ(kTwice.offset, 12);
}

}  // namespace
