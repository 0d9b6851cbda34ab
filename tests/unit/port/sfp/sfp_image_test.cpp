#include "port/sfp/sfp_image.h"

#include <gtest/gtest.h>

#include "sfp_test_image.h"

namespace {

// SFF-8024: QSFP, QSFP+, QSFP28, CXP2. The identifiers beside them, microQSFP (0x17) and QSFP-DD (0x18)
// included, are read as SFP.
TEST(IsQsfp, TellsByTheFirstByteAlone) {
  for (unsigned identifier = 0; identifier < 256; ++identifier) {
    TestImage image = TestImage::Sfp();
    image.Set(0, {static_cast<std::uint8_t>(identifier)}).Set(128, {0x0d});
    const bool expected = identifier == 12 || identifier == 13 || identifier == 17 || identifier == 18;
    EXPECT_EQ(IsQsfp(image), expected) << identifier;
    EXPECT_EQ(PageBase(image), expected ? 128U : 0U) << identifier;
  }
}

TEST(IsQsfp, ImageWithoutBytesIsNone) {
  EXPECT_FALSE(IsQsfp({}));
  EXPECT_EQ(PageBase({}), 0U);
}

TEST(BytesAt, GivesAllBytesOrNone) {
  TestImage image = TestImage::Sfp();
  image.Set(8, {1, 2});
  const SfpImage ten = image.First(10);
  EXPECT_EQ(BytesAt(ten, 8, 2).size(), 2U);
  EXPECT_EQ(BytesAt(ten, 8, 2)[1], 2);
  EXPECT_TRUE(BytesAt(ten, 9, 2).empty());
  EXPECT_TRUE(BytesAt(ten, 10, 1).empty());
  EXPECT_TRUE(BytesAt(ten, 11, 0).empty());
  EXPECT_TRUE(BytesAt(ten, 0xFFFE, 0xFFFF).empty());
  EXPECT_TRUE(BytesAt(ten, SIZE_MAX, 2).empty());
}

TEST(ByteAt, IsZeroBehindTheEnd) {
  TestImage image = TestImage::Sfp();
  image.Set(9, {7, 8});
  const SfpImage ten = image.First(10);
  EXPECT_EQ(ByteAt(ten, 9), 7);
  EXPECT_EQ(ByteAt(ten, 10), 0);
}

}  // namespace
