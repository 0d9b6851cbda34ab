#include "config/boot/boot_record.h"

#include <gtest/gtest.h>

#include "unit/config/boot/boot_fixture.h"

namespace {

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

}  // namespace
