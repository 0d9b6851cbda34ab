#include "config/boot/boot_entry.h"

#include <gtest/gtest.h>

#include "unit/config/boot/boot_fixture.h"

namespace {

TEST_F(BootTest, EntriesOfEachMode) {
  struct Rule {
    const char* mode;
    std::uint16_t device;
    const char* number;
    const char* result;  // of this option alone: with 55 and 56 its own check has passed
  };
  const Rule rules[] = {
      {"BIOS", 0x3522, "0", "55"}, {"BIOS", 0x3522, "3", "55"}, {"BIOS", 0x3522, "4", "4"},
      {"BIOS", 0x3432, "3", "55"}, {"BIOS", 0x3432, "4", "4"},  {kUefi, 0x3522, "4", "55"},
      {kUefi, 0x3522, "7", "55"},  {kUefi, 0x3522, "8", "4"},   {kUefi, 0x3522, "-1", "4"},
      {kNvme, 0x3522, "7", "56"},  {kNvme, 0x3522, "8", "4"},   {kNvme, 0x3522, "word", "56"},
  };
  for (const Rule& rule : rules) {
    UseModel({rule.device});
    EXPECT_EQ(CheckedExt({"-n", rule.number}, rule.mode), rule.result) << rule.mode << rule.number;
    EXPECT_EQ(CheckedExt({"--boot-target-num", rule.number}, rule.mode), rule.result);
  }
}

TEST_F(BootTest, OwnChecksOfTheEntrysOptions) {
  EXPECT_EQ(CheckedExt({"-p", kNobodyText}), "6");
  EXPECT_EQ(CheckedExt({"-p", "50:06:01"}), "6");
  EXPECT_EQ(CheckedExt({"-p", "50:06:01:60:3b:20:41:5fx"}), "6");
  EXPECT_EQ(CheckedExt({"-p", kZeroText}), "55");
  EXPECT_EQ(CheckedExt({"-p", kDiskText}), "55");
  EXPECT_EQ(CheckedExt({"-o", "word"}), "55");
  EXPECT_EQ(CheckedExt({"-l", "maybe"}), "6");
  EXPECT_EQ(CheckedExt({"-l", "maybe"}, kNvme), "6");
  // Number, port name, disk, enable: the first that fails decides, before the set and of the entry.
  EXPECT_EQ(CheckedExt({"-l", "maybe", "-p", "x", "-n", "8"}), "4");
  EXPECT_EQ(CheckedExt({"-n", "1", "-p", kFlashText, "-o", "99", "-l", "maybe"}), "6");
}

TEST_F(BootTest, TheEntrysOptionsComeAsASet) {
  const std::vector<std::string> options[] = {{"-n", "1"}, {"-p", kFlashText}, {"-o", "1"}, {"-l", "true"}};
  for (unsigned given = 0; given < 16; ++given) {
    std::vector<std::string> words;
    for (unsigned i = 0; i < 4; ++i) {
      if ((given >> i & 1) != 0) words.insert(words.end(), options[i].begin(), options[i].end());
    }
    const std::string nvme = CheckedExt(words, kNvme);
    if (given == 0) {
      EXPECT_EQ(nvme, "Boot_Mode=4");
    } else if (given == 15) {
      EXPECT_NE(nvme.find("NVME_1_Enable=1"), std::string::npos);
    } else {
      EXPECT_EQ(nvme, "56") << given;
    }
    // Without NVMe the enable flag means nothing; here the complete set names a target of the wrong kind.
    const std::string uefi = CheckedExt(words, kUefi);
    EXPECT_EQ(uefi, (given & 7) == 0 ? "Boot_Mode=2" : (given & 7) == 7 ? "6" : "55") << given;
  }
}

TEST_F(BootTest, AnEntryOfTheOtherModes) {
  const std::vector<std::string> disk = {"-p", kDiskText, "-o", "3"};
  const auto entry = [&](const char* number) {
    std::vector<std::string> words = {"-n", number};
    words.insert(words.end(), disk.begin(), disk.end());
    return words;
  };
  const std::string name = kDiskText;
  EXPECT_EQ(CheckedExt(entry("0")), "Boot_Mode=1 Primary_Boot_Target_LUN=3 Primary_Boot_Target_WWPN=" + name);
  EXPECT_EQ(CheckedExt(entry("3")),
            "Alternate_Boot_Target_3_LUN=3 Alternate_Boot_Target_3_WWPN=" + name + " Boot_Mode=1");
  EXPECT_EQ(CheckedExt(entry("7"), kUefi),
            "Alternate_Boot_Target_7_LUN=3 Alternate_Boot_Target_7_WWPN=" + name + " Boot_Mode=2");
}

TEST_F(BootTest, AnEntryMustBeVisibleAndOfItsProtocol) {
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kDiskText, "-o", "1"}), "6");
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kDiskText, "-o", "65539"}), "6");
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kFlashText, "-o", "1"}), "6");
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kFlashText, "-o", "1"}, kUefi), "6");
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kDiskText, "-o", "3", "-l", "true"}, kNvme), "6");
  EXPECT_EQ(CheckedExt({"-n", "0", "-p", kFlashText, "-o", "2", "-l", "true"}, kNvme), "6");
}

TEST_F(BootTest, AnNvmeEntryTakesTheTargetsNames) {
  EXPECT_EQ(CheckedExt({"-n", "6", "-p", kFlashText, "-o", "3", "-l", "FALSE"}, kNvme),
            "Boot_Mode=4 NVME_6_ControllerID=4660 NVME_6_Enable=0 NVME_6_NQN=nqn.2014-08.org:flash "
            "NVME_6_NamespaceID=3 "
            "NVME_6_WWNN=20:06:01:60:3b:20:41:99 NVME_6_WWPN=50:06:01:60:3b:20:41:99");
}

TEST_F(BootTest, AClearedEntryHoldsNothingOfATarget) {
  EXPECT_EQ(CheckedExt({"-n", "1", "-p", kZeroText, "-o", "7"}),
            std::string("Alternate_Boot_Target_1_LUN=0 Alternate_Boot_Target_1_WWPN=") + kZeroText +
                " Boot_Mode=1");
  EXPECT_EQ(
      CheckedExt({"-n", "1", "-p", kZeroText, "-o", "7", "-l", "false"}, kNvme),
      std::string(
          "Boot_Mode=4 NVME_1_ControllerID=0 NVME_1_Enable=0 NVME_1_NQN= NVME_1_NamespaceID=0 NVME_1_WWNN=") +
          kZeroText + " NVME_1_WWPN=" + kZeroText);
}

TEST_F(BootTest, AnNqnThatNoFileCanHoldIsRefused) {
  for (const char bad : {' ', '#', '\x7f', '\x80', '\n'}) {
    targets_[1].nqn.bytes[3] = bad;
    EXPECT_EQ(CheckedExt({"-n", "1", "-p", kFlashText, "-o", "3", "-l", "true"}, kNvme), "6")
        << static_cast<int>(bad);
  }
  std::memset(targets_[1].nqn.bytes, 'q', 256);
  EXPECT_NE(CheckedExt({"-n", "1", "-p", kFlashText, "-o", "3", "-l", "true"}, kNvme)
                .find("NQN=" + std::string(255, 'q') + " "),
            std::string::npos);
}

}  // namespace
