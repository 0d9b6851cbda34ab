#include "tools/lab/view/words.h"

#include <gtest/gtest.h>

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
  PciIdentity pci{};
  pci.vendor_id = 0x1C9E;
  pci.device_id = 0x7132;
  EXPECT_STREQ(view::FamilyName(pci), "fern");
  pci.device_id = 0x7122;
  EXPECT_STREQ(view::FamilyName(pci), "ginkgo");
  pci.device_id = 0x3640;
  EXPECT_STREQ(view::FamilyName(pci), "dahlia");
  pci.vendor_id = 0x1234;
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
