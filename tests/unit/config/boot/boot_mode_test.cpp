#include "config/boot/boot_mode.h"

#include <gtest/gtest.h>

#include "unit/config/boot/boot_fixture.h"

namespace {

TEST_F(BootTest, ModeWords) {
  EXPECT_EQ(Checked({}), "Boot_Mode=0");
  EXPECT_EQ(Checked({"-b", "bios"}), "Boot_Mode=0");
  EXPECT_EQ(Checked({"-b", "uefi"}), "Boot_Mode=1");
  EXPECT_EQ(Checked({"--boot-mode", "Uefi"}), "Boot_Mode=1");
  for (const char* const word : {"NVME", "", "1", "legacy"})
    EXPECT_EQ(Checked({"-b", word}), "mode 6") << word;
  EXPECT_EQ(Checked({"-b"}), "Boot_Mode=0");
  EXPECT_EQ(CheckedExt({}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({"-b", "bios"}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({"-b", "uefi"}), "Boot_Mode=2");
  EXPECT_EQ(CheckedExt({"-b", "nvme"}), "Boot_Mode=4");
  for (const char* const word : {"", "4", "NVMe/FC"}) EXPECT_EQ(CheckedExt({"-b", word}), "mode 6") << word;
}

TEST_F(BootTest, OtherModesNeedAFamilyThatHasThem) {
  for (const std::uint16_t device : kDevices) {
    UseModel({device});
    const bool has = HazelIrisOrDahlia(device);
    EXPECT_EQ(Checked({}, "BIOS"), "Boot_Mode=0");
    EXPECT_EQ(Checked({}, kUefi), has ? "Boot_Mode=1" : "mode 8") << std::hex << device;
    EXPECT_EQ(CheckedExt({}, kUefi), has ? "Boot_Mode=2" : "mode 8") << std::hex << device;
    EXPECT_EQ(CheckedExt({}, kNvme), has ? "Boot_Mode=4" : "mode 8") << std::hex << device;
  }
}

TEST_F(BootTest, ModesNeedTheirRom) {
  fc_->rom_flags = ~std::uint32_t{0x08};
  EXPECT_EQ(Checked({}), "mode 53");
  EXPECT_EQ(Checked({}, kUefi), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({}), "mode 53");
  EXPECT_EQ(CheckedExt({}, kNvme), "Boot_Mode=4");
  fc_->rom_flags = ~std::uint32_t{0x02};
  EXPECT_EQ(Checked({}), "Boot_Mode=0");
  EXPECT_EQ(Checked({}, kUefi), "mode 54");
  EXPECT_EQ(CheckedExt({}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({}, kUefi), "mode 54");
  EXPECT_EQ(CheckedExt({}, kNvme), "mode 54");
}

TEST_F(BootTest, TheLibraryFollowsTheMode) {
  struct Step {
    std::uint32_t before;
    const char* wanted;
    std::uint32_t after_plain;     // as the boot configuration leaves it
    std::uint32_t after_extended;  // as the extended form leaves it
  };
  const Step steps[] = {
      {1, "BIOS", 1, 1}, {2, "BIOS", 1, 1}, {4, "BIOS", 4, 1}, {0, "BIOS", 0, 1}, {0x102, "BIOS", 1, 1},
      {1, "UEFI", 2, 2}, {2, "UEFI", 2, 2}, {4, "UEFI", 4, 2}, {9, "UEFI", 9, 2}, {0x101, "UEFI", 2, 2},
  };
  for (const Step& step : steps) {
    Config().boot_mode = step.before;
    Checked({}, step.wanted);
    EXPECT_EQ(Config().boot_mode, step.after_plain) << step.before << step.wanted;
    Config().boot_mode = step.before;
    CheckedExt({}, step.wanted);
    EXPECT_EQ(Config().boot_mode & 0xFF, step.after_extended) << step.before << step.wanted;
  }
  for (const std::uint32_t before : {1, 2, 4}) {
    Config().boot_mode = before;
    CheckedExt({}, kNvme);
    EXPECT_EQ(Config().boot_mode, 4u);
  }
}

TEST_F(BootTest, AFamilyWithoutModesLeavesTheLibraryAlone) {
  UseModel({0x3432});
  Config().boot_mode = 2;
  EXPECT_EQ(Checked({}), "Boot_Mode=0");
  EXPECT_EQ(CheckedExt({}), "Boot_Mode=1");
  EXPECT_EQ(Config().boot_mode, 2u);
}

}  // namespace
