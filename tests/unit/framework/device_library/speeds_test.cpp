#include "framework/device_library/speeds.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

namespace {

TEST(LinkSpeeds, GoFromTheFastestToTheSlowest) {
  for (std::size_t i = 1; i < std::size(kLinkSpeeds); ++i) {
    EXPECT_LT(kLinkSpeeds[i].gbps, kLinkSpeeds[i - 1].gbps);
  }
  for (std::size_t i = 1; i < std::size(kSettableSpeeds); ++i) {
    EXPECT_EQ(kSettableSpeeds[i].rank, kSettableSpeeds[i - 1].rank - 1);
  }
}

TEST(LinkSpeeds, HaveCodesThatReadAsTheirNumber) {
  for (const LinkSpeed& speed : kLinkSpeeds) {
    EXPECT_EQ(speed.code, std::stoul(std::to_string(speed.gbps), nullptr, 16)) << speed.text;
  }
}

TEST(LinkSpeeds, HaveTextsThatBeginWithTheirNumber) {
  for (const LinkSpeed& speed : kLinkSpeeds) {
    EXPECT_EQ(speed.text, std::to_string(speed.gbps) + " Gbps");
    EXPECT_EQ(speed.word, std::to_string(speed.gbps) + "_Gbps");
  }
}

TEST(LinkSpeeds, ShareNoBitAndNoDataRate) {
  unsigned bits = 0;
  std::set<std::uint32_t> rates = {kDataRateAuto};
  for (const LinkSpeed& speed : kLinkSpeeds) bits += speed.supported_bit;
  for (const LinkSpeed& speed : kSettableSpeeds) rates.insert(speed.data_rate);
  EXPECT_EQ(bits, 0xFFu);
  EXPECT_EQ(rates, (std::set<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST(LinkSpeeds, AreFoundByTheirCode) {
  EXPECT_EQ(SpeedOfCode(16)->gbps, 10);
  EXPECT_EQ(SpeedOfCode(22)->gbps, 16);
  EXPECT_EQ(SpeedOfCode(100)->gbps, 64);
  for (const std::uint32_t code : {0u, 3u, 10u, 32u, 64u, 0xFFFFFFFFu}) EXPECT_EQ(SpeedOfCode(code), nullptr);
}

TEST(LinkSpeeds, AreSupportedByTheirBitOfTheMask) {
  EXPECT_TRUE(IsSupported(0x20, k16Gbps));
  EXPECT_TRUE(IsSupported(0xFF, k10Gbps));
  EXPECT_FALSE(IsSupported(0xDF, k16Gbps));
  EXPECT_FALSE(IsSupported(0, k1Gbps));
}

}  // namespace
