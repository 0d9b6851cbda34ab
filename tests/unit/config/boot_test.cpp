#include "config/boot_config.h"

#include <cstring>
#include "config/boot_config_ext.h"
#include "staged_fixture.h"

namespace {

constexpr WorldWideName kDisk = {0x50, 0x06, 0x01, 0x60, 0x3B, 0x20, 0x41, 0x5F};
constexpr WorldWideName kFlash = {0x50, 0x06, 0x01, 0x60, 0x3B, 0x20, 0x41, 0x99};
constexpr const char* kDiskText = "50:06:01:60:3b:20:41:5f";
constexpr const char* kFlashText = "50:06:01:60:3b:20:41:99";
constexpr const char* kNobodyText = "50:06:01:60:3b:20:41:00";
constexpr const char* kZeroText = "00:00:00:00:00:00:00:00";
constexpr const char* kUefi = "UEFI";
constexpr const char* kNvme = "NVME";

// A port that sees a disk (LUNs 0, 3 and 65535) and NVMe storage (namespaces 1 and 3).
class BootTest : public StagedFixture {
 protected:
  explicit BootTest(const char* family = "BootConfig") : StagedFixture(family) {
    AddTarget(kDisk, false, {0, 3, 65535});
    TargetEntry& flash = AddTarget(kFlash, true, {1, 3});
    const WorldWideName node = {0x20, 0x06, 0x01, 0x60, 0x3B, 0x20, 0x41, 0x99};
    flash.node_name = node;
    flash.controller_id = 0x1234;
    std::strcpy(flash.nqn.bytes, "nqn.2014-08.org:flash");
  }

  // What the options come to: the status of the mode step or of the checks, or "Key=value Key=value" with the
  // mode.
  template <class Settings>
  std::string CheckedBy(const char* mode, std::vector<std::string> options) const {
    if (mode != nullptr) options.insert(options.end(), {"--boot-mode", mode});
    const Words words = With(options);
    Settings settings;
    EXPECT_EQ(settings.SelectPort(words), kSuccess);
    if (const StatusCode status = settings.Prepare(words); status != kSuccess) {
      return "prepare " + std::to_string(status);
    }
    StagedValues values;
    const StatusCode status = settings.CheckOptions(words, {StagedPath("Boot", kPort), kValueSize}, values);
    if (status != kSuccess) return std::to_string(status);
    std::string text;
    for (const auto& [key, value] : values) text += (text.empty() ? "" : " ") + key + "=" + value;
    return text;
  }

  std::string Checked(const std::vector<std::string>& options, const char* mode = nullptr) const {
    return CheckedBy<BootConfig>(mode, options);
  }
  std::string CheckedExt(const std::vector<std::string>& options, const char* mode = nullptr) const {
    return CheckedBy<BootConfigExt>(mode, options);
  }
};

// The mode step.

TEST_F(BootTest, ModeWords) {
  EXPECT_EQ(Checked({}), "Boot_Mode=0");
  EXPECT_EQ(Checked({"-b", "bios"}), "Boot_Mode=0");
  EXPECT_EQ(Checked({"-b", "uefi"}), "Boot_Mode=1");
  EXPECT_EQ(Checked({"--boot-mode", "Uefi"}), "Boot_Mode=1");
  for (const char* const word : {"NVME", "", "1", "legacy"})
    EXPECT_EQ(Checked({"-b", word}), "prepare 6") << word;
  EXPECT_EQ(Checked({"-b"}), "Boot_Mode=0");
  EXPECT_EQ(CheckedExt({}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({"-b", "bios"}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({"-b", "uefi"}), "Boot_Mode=2");
  EXPECT_EQ(CheckedExt({"-b", "nvme"}), "Boot_Mode=4");
  for (const char* const word : {"", "4", "NVMe/FC"})
    EXPECT_EQ(CheckedExt({"-b", word}), "prepare 6") << word;
}

TEST_F(BootTest, OtherModesNeedAFamilyThatHasThem) {
  for (const std::uint16_t device : kDevices) {
    UseModel({device});
    const bool has = HazelIrisOrDahlia(device);
    EXPECT_EQ(Checked({}, "BIOS"), "Boot_Mode=0");
    EXPECT_EQ(Checked({}, kUefi), has ? "Boot_Mode=1" : "prepare 8") << std::hex << device;
    EXPECT_EQ(CheckedExt({}, kUefi), has ? "Boot_Mode=2" : "prepare 8") << std::hex << device;
    EXPECT_EQ(CheckedExt({}, kNvme), has ? "Boot_Mode=4" : "prepare 8") << std::hex << device;
  }
}

TEST_F(BootTest, ModesNeedTheirRom) {
  fc_->rom_flags = ~std::uint32_t{0x08};
  EXPECT_EQ(Checked({}), "prepare 53");
  EXPECT_EQ(Checked({}, kUefi), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({}), "prepare 53");
  EXPECT_EQ(CheckedExt({}, kNvme), "Boot_Mode=4");
  fc_->rom_flags = ~std::uint32_t{0x02};
  EXPECT_EQ(Checked({}), "Boot_Mode=0");
  EXPECT_EQ(Checked({}, kUefi), "prepare 54");
  EXPECT_EQ(CheckedExt({}), "Boot_Mode=1");
  EXPECT_EQ(CheckedExt({}, kUefi), "prepare 54");
  EXPECT_EQ(CheckedExt({}, kNvme), "prepare 54");
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

// The options that both forms have.

TEST_F(BootTest, FlagOptions) {
  struct Flag {
    const char* long_name;
    const char* short_name;
    const char* key;
    const char* for_true;
    const char* for_false;
    const char* in_bios;  // "" when the option passes there
    const char* in_uefi;
  };
  const Flag flags[] = {
      {"--enable-bfs", "-a", "Disable_BIOS", "0", "1", "", ""},
      {"--fabric-assigned-boot-lun", "-f", "Fabric_Assigned_Boot_Lun", "1", "0", "", ""},
      {"--selectable-boot", "-d", "Selectable_Boot", "1", "0", "", "18"},
      {"--selective-login", "-e", "Selective_Login", "1", "0", "4", ""},
      {"--selective-lun-login", "-c", "Selective_LUN_Login", "1", "0", "4", ""},
      {"--world-login", "-g", "World_Login", "1", "0", "4", ""},
  };
  for (const Flag& flag : flags) {
    for (const char* const mode : {"BIOS", kUefi, kNvme}) {
      const std::string refused = mode == std::string("BIOS") ? flag.in_bios : flag.in_uefi;
      const auto check = [&](const char* option, const char* value, const std::string& stored,
                             bool extended) {
        const std::string result =
            extended ? CheckedExt({option, value}, mode) : Checked({option, value}, mode);
        if (!refused.empty()) {
          EXPECT_EQ(result, refused) << option << value << mode;
        } else if (stored.empty()) {
          EXPECT_EQ(result, "6") << option << value << mode;
        } else {
          EXPECT_NE((" " + result + " ").find(" " + stored + " "), std::string::npos)
              << result << option << mode;
        }
      };
      for (const bool extended : {false, true}) {
        if (!extended && mode == kNvme) continue;
        const std::string key = flag.key;
        check(flag.long_name, "true", key + "=" + flag.for_true, extended);
        check(flag.short_name, "FALSE", key + "=" + flag.for_false, extended);
        check(flag.short_name, "maybe", "", extended);
      }
    }
  }
}

TEST_F(BootTest, FamiliesOfTheFlagOptions) {
  for (const std::uint16_t device : kDevices) {
    UseModel({device});
    const bool has_modes = HazelIrisOrDahlia(device);
    const bool no_fabric = Aster(device) || Birch(device) || Cedar(device);
    EXPECT_EQ(Checked({"-f", "nonsense"}), no_fabric ? "35" : "6") << std::hex << device;
    EXPECT_EQ(CheckedExt({"-f", "nonsense"}), no_fabric ? "35" : "6") << std::hex << device;
    for (const char* const option : {"-e", "-c", "-g"}) {
      EXPECT_EQ(Checked({option, "nonsense"}), has_modes ? "4" : "35") << std::hex << device;
      EXPECT_EQ(CheckedExt({option, "nonsense"}), has_modes ? "4" : "35") << std::hex << device;
    }
    EXPECT_EQ(CheckedExt({"-m", "nonsense"}), has_modes ? "4" : "35") << std::hex << device;
    for (const char* const option : {"-n", "-o", "-p", "-q"}) {
      EXPECT_EQ(Checked({option, "nonsense"}), has_modes ? "4" : "35") << std::hex << device;
    }
    for (const char* const option : {"-a", "-d", "-j", "-k", "-l", "-m"}) {
      EXPECT_EQ(Checked({option, "nonsense"}), "6") << std::hex << device;
    }
  }
}

TEST_F(BootTest, TheFirstFailingCheckDecides) {
  std::vector<std::string> words = {"-q", "x",  "-m", "x",  "-j", "x",  "-g",
                                    "x",  "-d", "x",  "-f", "x",  "-a", "x"};
  UseModel({0x3B40});  // of a family without the fabric assigned LUN and of one with all modes
  for (const char* const status : {"6", "35", "18", "6", "6", "6", "6"}) {
    EXPECT_EQ(Checked(words, kUefi), status) << words.size();
    words.pop_back();
    words.pop_back();
  }
}

// Drives.

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
  EXPECT_EQ(Checked({"-j", Drive(kFlashText, "2")}), "6");  // the namespace is looked at first
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

// Files of the boot configuration.

class BootFileTest : public BootTest {
 protected:
  StatusCode Read(const std::string& content, BootMode mode = BootMode::kBios) {
    Stage(content);
    const Words words = With({"-b", mode == BootMode::kBios ? "BIOS" : "UEFI"});
    BootConfig settings;
    EXPECT_EQ(settings.SelectPort(words), kSuccess);
    EXPECT_EQ(settings.Prepare(words), kSuccess);
    EXPECT_EQ(settings.ReadDevice(), kSuccess);
    const StatusCode status = settings.ReadFile({StagedPath("BootConfig", kPort), kValueSize});
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

// The boot entry of the extended form.

TEST_F(BootTest, FcNvmeIsAnOptionOfTheNvmeMode) {
  EXPECT_EQ(CheckedExt({"-m", "true"}, kNvme), "Boot_Mode=4 NVMe_Enable=1");
  EXPECT_EQ(CheckedExt({"--fc-nvme", "False"}, kNvme), "Boot_Mode=4 NVMe_Enable=0");
  EXPECT_EQ(CheckedExt({"-m", "maybe"}, kNvme), "6");
  EXPECT_EQ(CheckedExt({"-m", "true"}, kUefi), "4");
  EXPECT_EQ(CheckedExt({"-m", "true"}), "4");
}

TEST_F(BootTest, EntriesOfEachMode) {
  struct Rule {
    const char* mode;
    std::uint16_t device;
    const char* number;
    const char* result;  // of this option alone: 55 and 56 tell that its own check passed
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
  // Number, port name, disk, enable: the first that fails decides, ahead of the set and of the entry.
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

// Files of the extended form.

class BootExtFileTest : public BootTest {
 protected:
  BootExtFileTest() : BootTest("BootConfigExt") {}

  StatusCode Read(const std::string& content) {
    Stage(content);
    const Words words = With({"-b", kNvme});
    BootConfigExt settings;
    EXPECT_EQ(settings.SelectPort(words), kSuccess);
    EXPECT_EQ(settings.Prepare(words), kSuccess);
    EXPECT_EQ(settings.ReadDevice(), kSuccess);
    const StatusCode status = settings.ReadFile({StagedPath("BootConfigExt", kPort), 256});
    record_ = settings.NvmeRecord();
    mode_ = settings.Mode();
    return status;
  }

  NVMeBootRecord record_ = {};
  BootMode mode_ = BootMode::kBios;
};

TEST_F(BootExtFileTest, TheModeMustBeOneOfThree) {
  EXPECT_EQ(Read("Boot_Mode=1\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kBios);
  EXPECT_EQ(Read("Boot_Mode=2\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kUefi);
  EXPECT_EQ(Read("Boot_Mode=4\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kNvme);
  EXPECT_EQ(Read("A=1\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kNvme);
  for (const char* const value : {"0", "3", "5", "8", "-1", "word", "257"}) {
    EXPECT_EQ(Read(std::string("Boot_Mode=") + value + "\n"), kInvalidParameter) << value;
  }
}

TEST_F(BootExtFileTest, EnableFlagsAreAtMostOne) {
  for (const char* const key : {"NVMe_Enable", "NVME_0_Enable", "NVME_7_Enable"}) {
    EXPECT_EQ(Read(std::string(key) + "=0\n"), kSuccess) << key;
    EXPECT_EQ(Read(std::string(key) + "=1\n"), kSuccess) << key;
    EXPECT_EQ(Read(std::string(key) + "=2\n"), kInvalidParameter) << key;
    EXPECT_EQ(Read(std::string(key) + "=-1\n"), kInvalidParameter) << key;
  }
}

TEST_F(BootExtFileTest, EntriesAreOverlaid) {
  Config().nvme.entries[5].namespace_id = 99;
  std::strcpy(Config().nvme.entries[5].nqn.bytes, "nqn.old-and-longer");
  EXPECT_EQ(Read("NVME_5_WWPN=50:06:01:60:3b:20:41:99\nNVME_5_WWNN=1:2\nNVME_5_Enable=1\nNVME_5_NQN=nqn.new "
                 "# other\n"
                 "NVME_5_ControllerID=65537\n"),
            kSuccess);
  const NVMeBootEntry& entry = record_.entries[5];
  EXPECT_EQ(entry.port_name[7], 0x99);
  EXPECT_EQ(entry.node_name[0], 0);
  EXPECT_EQ(entry.enable, 1);
  EXPECT_EQ(std::string(entry.nqn.bytes, 20), std::string("nqn.new") + std::string(13, '\0'));
  EXPECT_EQ(entry.controller_id, 1);
  EXPECT_EQ(entry.namespace_id, 99u);
}

TEST_F(BootExtFileTest, AnNqnIsCutAt255Characters) {
  EXPECT_EQ(Read("NVME_0_NQN=" + std::string(300, 'n') + "\n"), kSuccess);
  EXPECT_EQ(std::string(record_.entries[0].nqn.bytes, 256), std::string(255, 'n') + '\0');
}

TEST_F(BootExtFileTest, ANewFileHoldsAllKeys) {
  const auto values_of = [&](std::uint16_t device) {
    UseModel({device});
    BootConfigExt settings;
    EXPECT_EQ(settings.SelectPort(With({})), kSuccess);
    EXPECT_EQ(settings.Prepare(With({})), kSuccess);
    EXPECT_EQ(settings.ReadDevice(), kSuccess);
    return settings.AllValues();
  };
  EXPECT_EQ(values_of(0x3522).size(),
            72u);  // 23 of the boot configuration, NVMe_Enable and 48 of the entries
  EXPECT_EQ(values_of(0x3432).size(), 24u);
}

}  // namespace
