// The eight drives that a host can boot from, as the boot record, the staged file and the options know them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "config/options.h"
#include "config/staged/staged_parameter.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"

struct BootDriveRow {
  BootDrive HBAParamsInfo::*drive;
  StagedParameter port_name;  // both in the drive
  StagedParameter lun;
  OptionName option;
};

// By the drives' numbers; 0 is the primary one. The legacy mode has the first four.
std::span<const BootDriveRow> BootDrives();
inline constexpr std::size_t kBiosDrives = 4;

// Adds the two keys of a drive.
void AddDrive(std::size_t drive, const WorldWideName& port_name, std::int64_t lun, StagedValues& values);

// What a drive can be: a target that the port sees, and one of its LUNs.

inline constexpr CheckResult kIncompleteName = {kInvalidParameter, "not a complete value"};
inline constexpr CheckResult kNoSuchTarget = {kInvalidParameter, "the port sees no such target"};
inline constexpr CheckResult kNoSuchLun = {kInvalidParameter, "the target has no such LUN or namespace"};

// The first target with this port name that the port sees, null when there is none.
const TargetEntry* FindTarget(const FCProtocolEntry& fc, const WorldWideName& port_name);

// True when the target has this LUN or namespace.
bool HasLun(const TargetEntry& target, std::int64_t number);
