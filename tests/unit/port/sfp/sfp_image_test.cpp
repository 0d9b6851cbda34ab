#include "port/sfp/sfp_image.h"

#include <gtest/gtest.h>

#include "sfp_test_image.h"

namespace {

// SFF-8024: QSFP, QSFP+, QSFP28, CXP2. The identifiers beside them, microQSFP (0x17) and QSFP-DD (0x18)
// included, are read as SFP.
TEST(IsQsfp, FirstByteAloneDecides) {
  for (unsigned identifier = 0; identifier < 256; ++identifier) {
    TestImage image = TestImage::Sfp();
    image.Set(0, {static_cast<std::uint8_t>(identifier)}).Set(128, {0x0d});
    const bool expected = identifier == 12 || identifier == 13 || identifier == 17 || identifier == 18;
    EXPECT_EQ(IsQsfp(image), expected) << identifier;
  }
}

TEST(IsQsfp, ImageWithoutBytesIsNone) {
  EXPECT_FALSE(IsQsfp({}));
}

TEST(SfpImage, GivesAllBytesOfARangeOrNone) {
  TestImage image = TestImage::Sfp();
  image.Set(8, {1, 2});
  const SfpImage ten = image.First(10);
  ASSERT_EQ(ten.Bytes({8, 2}).size(), 2U);
  EXPECT_EQ(ten.Bytes({8, 2})[0], 1);
  EXPECT_EQ(ten.Bytes({8, 2})[1], 2);
  EXPECT_TRUE(ten.Bytes({9, 2}).empty());
  EXPECT_TRUE(ten.Bytes({10, 1}).empty());
  EXPECT_TRUE(ten.Bytes({11, 0}).empty());
  EXPECT_TRUE(ten.Bytes({0xFFFE, 0xFFFF}).empty());
  EXPECT_TRUE(ten.Bytes({0, 0xFFFF}).empty());
  EXPECT_TRUE(SfpImage().Bytes({0, 1}).empty());
}

TEST(SfpImage, ReadsBigEndianNumbers) {
  TestImage image = TestImage::Sfp();
  image.Set(6, {0x81, 0x92, 0xa3, 0xb4});
  EXPECT_EQ(SfpImage(image).Read(SfpNumber<std::uint8_t>{6}), 0x81);
  EXPECT_EQ(SfpImage(image).Read(SfpNumber<std::uint16_t>{6}), 0x8192);
  EXPECT_EQ(SfpImage(image).Read(SfpNumber<std::uint32_t>{6}), 0x8192a3b4U);
}

TEST(SfpImage, NumberThatReachesPastTheEndIsZero) {
  TestImage image = TestImage::Sfp();
  image.Set(6, {0xff, 0xff, 0xff, 0xff, 0xff});
  const SfpImage ten = image.First(10);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint8_t>{9}), 0xff);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint8_t>{10}), 0);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint16_t>{8}), 0xffff);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint16_t>{9}), 0);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint32_t>{6}), 0xffffffffU);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint32_t>{7}), 0U);
  EXPECT_EQ(ten.Read(SfpNumber<std::uint16_t>{0xffff}), 0);
}

}  // namespace
