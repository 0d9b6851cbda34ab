#include "config/boot/boot_config.h"

#include <gtest/gtest.h>

#include "unit/config/boot/boot_fixture.h"

namespace {

std::string Drive(const std::string& name, const char* lun) {
  return name + "-" + lun;
}

TEST_F(BootTest, DrivesHaveTheirKeys) {
  const char* const options[][2] = {{"--drive-0", "-j"}, {"--drive-1", "-k"}, {"--drive-2", "-l"},
                                    {"--drive-3", "-m"}, {"--drive-4", "-n"}, {"--drive-5", "-o"},
                                    {"--drive-6", "-p"}, {"--drive-7", "-q"}};
  const char* const keys[] = {"Primary_Boot_Target",     "Alternate_Boot_Target_1", "Alternate_Boot_Target_2",
                              "Alternate_Boot_Target_3", "Alternate_Boot_Target_4", "Alternate_Boot_Target_5",
                              "Alternate_Boot_Target_6", "Alternate_Boot_Target_7"};
  for (std::size_t drive = 0; drive < std::size(keys); ++drive) {
    const std::string key = keys[drive];
    const std::string stored = key + "_LUN=3 " + key + "_WWPN=" + kDiskText;
    const std::string in_order = drive == 0 ? "Boot_Mode=1 " + stored : stored + " Boot_Mode=1";
    for (const char* const option : options[drive]) {
      EXPECT_EQ(Checked({option, Drive(kDiskText, "3")}, kUefi), in_order);
    }
    EXPECT_EQ(Checked({options[drive][1], Drive(kDiskText, "3")}), drive >= 4   ? "4"
                                                                   : drive == 0 ? "Boot_Mode=0 " + stored
                                                                                : stored + " Boot_Mode=0");
  }
}

TEST_F(BootTest, DrivesMustBeVisible) {
  EXPECT_EQ(Checked({"-j", Drive(kNobodyText, "0")}), "6");
  EXPECT_EQ(Checked({"-j", Drive(kDiskText, "1")}), "6");
  EXPECT_EQ(Checked({"-j", Drive(kDiskText, "-3")}), "6");
  EXPECT_EQ(Checked({"-j", Drive(kDiskText, "65539")}), "6");  // 3 in 16 bits
  EXPECT_EQ(Checked({"-j", Drive(kDiskText, "65535")}),
            std::string("Boot_Mode=0 Primary_Boot_Target_LUN=65535 Primary_Boot_Target_WWPN=") + kDiskText);
}

TEST_F(BootTest, AnNvmeTargetIsNoDrive) {
  EXPECT_EQ(Checked({"-j", Drive(kFlashText, "1")}), "36");
  EXPECT_EQ(Checked({"-j", Drive(kFlashText, "2")}), "6");  // the namespace is checked first
}

TEST_F(BootTest, TheFirstTargetOfANameCounts) {
  AddTarget(kDisk, false, {77});
  EXPECT_EQ(Checked({"-j", Drive(kDiskText, "77")}), "6");
}

TEST_F(BootTest, ADriveIsClearedWithoutATarget) {
  for (const char* const value : {"00:00:00:00:00:00:00:00-7", "0:0:0:0:0:0:0:0-0", "100:0:0:0:0:0:0:0--1"}) {
    EXPECT_EQ(Checked({"-j", value}),
              std::string("Boot_Mode=0 Primary_Boot_Target_LUN=0 Primary_Boot_Target_WWPN=") + kZeroText);
  }
}

TEST_F(BootTest, ADriveIsStoredInOneForm) {
  for (const char* const value : {"50:06:01:60:3B:20:41:5F-3", "50:6:1:60:3b:20:41:5f-03",
                                  "0x50:06:01:60:3b:20:41:5f-+3", "50: 06:01:60:3b:20:41:5f- 3"}) {
    EXPECT_EQ(Checked({"-j", value}),
              std::string("Boot_Mode=0 Primary_Boot_Target_LUN=3 Primary_Boot_Target_WWPN=") + kDiskText)
        << value;
  }
}

TEST_F(BootTest, ADriveThatIsReadOnlyInPartIsRefused) {
  for (const char* const value :
       {"", "-", "50:06:01:60:3b:20:41:5f", "50:06:01:60:3b:20:41:5f-", "50:06:01:60:3b:20:41-3",
        "50:06:01:60:3b:20:41:5f-x", "50:06:01:60:3b:20:41:5f-3x", "50:06:01:60:3b:20:41:5f:00-3",
        "00:00:00:00:00:00:00:00", "00:00:00:00:00:00:00-1", "clear", "FC_50:06:01:60:3b:20:41:5f-3"}) {
    EXPECT_EQ(Checked({"-j", value}), "6") << value;
  }
}

// Files.

class BootFileTest : public BootTest {
 protected:
  StatusCode Read(const std::string& content, BootMode mode = BootMode::kBios) {
    Stage(content);
    TestRun test(With({"-b", mode == BootMode::kBios ? "BIOS" : "UEFI"}));
    BootConfig settings(*fc_);
    EXPECT_EQ(settings.Open(test.run, StagedCommand::kGet), kSuccess);
    const StatusCode status = settings.ReadFile(test.run, File());
    record_ = settings.Record();
    mode_ = settings.Mode();
    return status;
  }

  HBAParamsInfo record_ = {};
  BootMode mode_ = BootMode::kBios;
};

TEST_F(BootFileTest, FlagsAreAtMostOne) {
  for (const char* const key : {"Disable_BIOS", "Fabric_Assigned_Boot_Lun", "Selectable_Boot",
                                "Selective_Login", "Selective_LUN_Login", "World_Login"}) {
    for (const char* const value : {"0", "1", "word"}) {
      EXPECT_EQ(Read(std::string(key) + "=" + value + "\n"), kSuccess) << key << value;
    }
    for (const char* const value : {"2", "-1", "256"}) {
      EXPECT_EQ(Read(std::string(key) + "=" + value + "\n"), kInvalidParameter) << key << value;
    }
  }
}

TEST_F(BootFileTest, TheModeIsUefiExactlyForOne) {
  for (const BootMode before : {BootMode::kBios, BootMode::kUefi}) {
    EXPECT_EQ(Read("A=1\n", before), kSuccess);
    EXPECT_EQ(mode_, before);
    EXPECT_EQ(Read("Boot_Mode=1\n", before), kSuccess);
    EXPECT_EQ(mode_, BootMode::kUefi);
    for (const char* const value : {"0", "2", "9", "word", "-1"}) {
      EXPECT_EQ(Read(std::string("Boot_Mode=") + value + "\n", before), kSuccess);
      EXPECT_EQ(mode_, BootMode::kBios) << value;
    }
  }
}

TEST_F(BootFileTest, DrivesAreTakenUnchecked) {
  EXPECT_EQ(Read("Primary_Boot_Target_WWPN=50:06:01:60:3b:20:41:00\nPrimary_Boot_Target_LUN=65537\n"
                 "Alternate_Boot_Target_7_WWPN=1:2:3:4:5:6:7:8\nAlternate_Boot_Target_7_LUN=word\n"),
            kSuccess);
  EXPECT_EQ(record_.primary_drive.port_name[0], 0x50);
  EXPECT_EQ(record_.primary_drive.lun, 1);
  EXPECT_EQ(record_.alternate_drive_7.port_name[7], 8);
  EXPECT_EQ(record_.alternate_drive_7.lun, 0);
}

TEST_F(BootFileTest, AnIncompleteNameLeavesTheRecord) {
  Config().boot.alternate_drive_4.port_name = {0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21};
  EXPECT_EQ(Read("Alternate_Boot_Target_4_WWPN=50:06:01\nAlternate_Boot_Target_4_LUN=4\n"), kSuccess);
  EXPECT_EQ(record_.alternate_drive_4.port_name[0], 0x21);
  EXPECT_EQ(record_.alternate_drive_4.lun, 4);
}

}  // namespace
