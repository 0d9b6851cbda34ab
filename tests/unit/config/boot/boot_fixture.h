// A port that can boot from what it sees.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "config/boot/boot_config.h"
#include "config/boot/boot_config_ext.h"
#include "unit/config/staged_fixture.h"

inline constexpr WorldWideName kDisk = {0x50, 0x06, 0x01, 0x60, 0x3B, 0x20, 0x41, 0x5F};
inline constexpr WorldWideName kFlash = {0x50, 0x06, 0x01, 0x60, 0x3B, 0x20, 0x41, 0x99};
inline constexpr const char* kDiskText = "50:06:01:60:3b:20:41:5f";
inline constexpr const char* kFlashText = "50:06:01:60:3b:20:41:99";
inline constexpr const char* kNobodyText = "50:06:01:60:3b:20:41:00";
inline constexpr const char* kZeroText = "00:00:00:00:00:00:00:00";
inline constexpr const char* kUefi = "UEFI";
inline constexpr const char* kNvme = "NVME";

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

  // What the options come to: "mode" with the status of the mode step, the status of the checks, or
  // "Key=value Key=value".
  template <class Settings>
  std::string CheckedBy(const char* mode, std::vector<std::string> options) const {
    if (mode != nullptr) options.insert(options.end(), {"--boot-mode", mode});
    TestRun test(With(options));
    Settings settings(*fc_);
    const StatusCode status = settings.Open(test.run, StagedCommand::kGet);
    return status == kSuccess ? Taken(settings, test.run) : "mode " + std::to_string(status);
  }

  std::string Checked(const std::vector<std::string>& options, const char* mode = nullptr) const {
    return CheckedBy<BootConfig>(mode, options);
  }
  std::string CheckedExt(const std::vector<std::string>& options, const char* mode = nullptr) const {
    return CheckedBy<BootConfigExt>(mode, options);
  }
};
