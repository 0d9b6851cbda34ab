#include "port/rdp_descriptor.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(RdpWords, ReadsBigEndianWordsAndZeroOutside) {
  const Bytes bytes = {0x01, 0x02, 0x03, 0x04, 0xff, 0xfe, 0xfd, 0xfc, 0x05};
  const RdpWords words(bytes);
  EXPECT_EQ(words.Count(), 2u);
  EXPECT_EQ(words[0], 0x01020304u);
  EXPECT_EQ(words[1], 0xfffefdfcu);
  EXPECT_EQ(words[2], 0u);  // half a word is none
  EXPECT_EQ(words[SIZE_MAX], 0u);
}

TEST(RdpWords, PartIsCutAtTheEnd) {
  const Bytes bytes = {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3};
  const RdpWords words(bytes);
  EXPECT_EQ(words.Part(1, 1).Count(), 1u);
  EXPECT_EQ(words.Part(1, 1)[0], 2u);
  EXPECT_EQ(words.Part(1, SIZE_MAX).Count(), 2u);
  EXPECT_EQ(words.Part(3, 1).Count(), 0u);
  EXPECT_EQ(words.Part(SIZE_MAX, SIZE_MAX).Count(), 0u);
}

}  // namespace
