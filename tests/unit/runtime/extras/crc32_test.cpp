#include "runtime/extras/crc32.h"

#include <gtest/gtest.h>

namespace {

TEST(Crc32, CheckValueOfIeee8023) {
  EXPECT_EQ(~Crc32("123456789", 9, 0xffffffff), 0xcbf43926U);
}

TEST(Crc32, OneByteFromZeroIsThePolynomialShiftedThrough) {
  // 0x80 reaches the low end in the last of the eight steps, and leaves the polynomial itself.
  EXPECT_EQ(Crc32("\x80", 1, 0), 0xedb88320U);
  // 0x40 gets there one step earlier; 0xedb88320 is even, so that the last step only shifts it.
  EXPECT_EQ(Crc32("\x40", 1, 0), 0x76dc4190U);
}

TEST(Crc32, EmptyBufferGivesTheStartValue) {
  EXPECT_EQ(Crc32("", 0, 0x12345678), 0x12345678U);
  EXPECT_EQ(Crc32(nullptr, 0, 5), 5U);
}

TEST(Crc32, ResultIsTheStartValueOfWhatFollows) {
  EXPECT_EQ(Crc32("56789", 5, Crc32("1234", 4, 0xffffffff)), 0x340bc6d9U);  // ~0xcbf43926
}

TEST(Crc32, StartValueCounts) {
  EXPECT_NE(Crc32("123456789", 9, 0), Crc32("123456789", 9, 1));
}

}  // namespace
