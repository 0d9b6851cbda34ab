// The options and keys that the boot configuration and its extended form share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "config/boot_settings.h"
#include "config/staged_options.h"
#include "framework/device_library/target_records.h"

inline constexpr const char* kBootModeKey = "Boot_Mode";
inline constexpr const char* kDriveNameKey = "WWPN";
inline constexpr const char* kDriveLunKey = "LUN";

// The file's key for a drive's port name or LUN: "Primary_Boot_Target_LUN", "Alternate_Boot_Target_1_LUN".
std::string DriveKey(std::size_t drive, const char* end);

// Also the boot mode that the options must fit.
struct BootChecks : OptionChecks {
  BootMode mode;
};

constexpr CheckResult kIncompleteName = {kInvalidParameter, "not a complete value"};
constexpr CheckResult kNoSuchTarget = {kInvalidParameter, "the port sees no such target"};
constexpr CheckResult kNoSuchLun = {kInvalidParameter, "the target has no such LUN or namespace"};

// Tests of the adapter and the mode: options of every mode but the legacy one, and the same for any adapter.
CheckResult AllowLoginOption(const BootChecks& checks);

// Checks the options that both forms have, which stand ahead of those for drives and targets.
StatusCode TakeCommonOptions(const Words& words, BootChecks& checks);

// The first target with this port name that the port sees, null when there is none.
const TargetEntry* FindTarget(const FCProtocolEntry& fc, const WorldWideName& port_name);

// True when the target has this LUN or namespace.
bool HasLun(const TargetEntry& target, std::int64_t number);

// Adds the two keys of a drive.
void AddDrive(std::size_t drive, const WorldWideName& port_name, std::int64_t lun, StagedValues& values);
