#include "tools/lab/view/words.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace {

TEST(Words, NameSpeeds) {
  EXPECT_EQ(view::SpeedText(0), "none");
  EXPECT_EQ(view::SpeedText(0x01), "1 Gbps");
  EXPECT_EQ(view::SpeedText(0x64), "64 Gbps");
  EXPECT_EQ(view::SpeedText(0x99), "speed code 0x99");
}

TEST(Words, NameCodes) {
  EXPECT_EQ(view::WordOf(view::kSeverities, 0xF7), "alarm");
  EXPECT_EQ(view::WordOf(view::kSeverities, 7), "code 7");
}

TEST(Words, NameFamilies) {
  const std::pair<std::uint16_t, const char*> families[] = {
      {0x3A02, "aster"}, {0x3B41, "birch"}, {0x7102, "cedar"}, {0x7122, "ginkgo"}, {0x3432, "elm"},
      {0x7132, "fern"},  {0x3522, "hazel"}, {0x3150, "iris"},  {0x3640, "dahlia"}, {0xFFFF, ""}};
  PciIdentity pci{};
  pci.vendor_id = 0x1C9E;
  for (const auto& [device, name] : families) {
    pci.device_id = device;
    EXPECT_STREQ(view::FamilyName(pci), name) << device;
  }
  pci.vendor_id = 0x1234;
  pci.device_id = 0x3640;
  EXPECT_STREQ(view::FamilyName(pci), "");
}

TEST(Words, NameTargetStates) {
  TargetEntry target{};
  EXPECT_STREQ(view::TargetStateText(target), "offline");
  target.state_flags[0] = 0x40;
  EXPECT_STREQ(view::TargetStateText(target), "unconfigured");
  target.state_flags[2] = 0x02;
  target.state_flags[4] = 0x01;
  EXPECT_STREQ(view::TargetStateText(target), "online");
}

TEST(Words, NameResults) {
  EXPECT_EQ(view::ResultText(150), "150 (maintenance mode)");
  EXPECT_EQ(view::ResultText(907), "907");
}

}  // namespace
