#include "config/boot_options.h"

#include "discovery/host_walk.h"
#include "framework/device_library/families.h"

namespace {

using Option = StagedOption<BootChecks>;

constexpr CheckResult kLegacyModeOnly = {kNotForBootMode, "an option of the legacy boot mode"};
constexpr CheckResult kOtherModesOnly = {kBootModeNeeded, "no option of the legacy boot mode"};

CheckResult AllowFabricAssignedLun(const BootChecks& checks) {
  return HasFabricAssignment(checks.fc.pci) ? CheckResult{} : kNotThisAdapter;
}

CheckResult AllowSelectableBoot(const BootChecks& checks) {
  return checks.mode == BootMode::kBios ? CheckResult{} : kLegacyModeOnly;
}

// In the order of the checks: the first one that fails decides what the user reads.
constexpr Option kOptions[] = {
    {"--enable-bfs", "-a", "Disable_BIOS", nullptr, &TakeTrueFalse, 0},
    {"--fabric-assigned-boot-lun", "-f", "Fabric_Assigned_Boot_Lun", &AllowFabricAssignedLun, &TakeTrueFalse,
     1},
    {"--selectable-boot", "-d", "Selectable_Boot", &AllowSelectableBoot, &TakeTrueFalse, 1},
    {"--selective-login", "-e", "Selective_Login", &AllowLoginOption, &TakeTrueFalse, 1},
    {"--selective-lun-login", "-c", "Selective_LUN_Login", &AllowLoginOption, &TakeTrueFalse, 1},
    {"--world-login", "-g", "World_Login", &AllowLoginOption, &TakeTrueFalse, 1},
};

}  // namespace

std::string DriveKey(std::size_t drive, const char* end) {
  const std::string begin =
      drive == 0 ? "Primary_Boot_Target_" : "Alternate_Boot_Target_" + std::to_string(drive) + "_";
  return begin + end;
}

CheckResult AllowLoginOption(const BootChecks& checks) {
  if (!HasBootModes(checks.fc.pci)) return kNotThisAdapter;
  return checks.mode == BootMode::kBios ? kOtherModesOnly : CheckResult{};
}

StatusCode TakeCommonOptions(const Words& words, BootChecks& checks) {
  return TakeOptions<BootChecks>(kOptions, words, checks);
}

const TargetEntry* FindTarget(const FCProtocolEntry& fc, const WorldWideName& port_name) {
  for (const TargetEntry& target : TargetsOf(fc)) {
    if (target.port_name == port_name) return &target;
  }
  return nullptr;
}

bool HasLun(const TargetEntry& target, std::int64_t number) {
  for (const LunEntry& lun : LunsOf(target)) {
    if (lun.number == number) return true;
  }
  return false;
}

void AddDrive(std::size_t drive, const WorldWideName& port_name, std::int64_t lun, StagedValues& values) {
  values[DriveKey(drive, kDriveNameKey)] = port_name.Text();
  values[DriveKey(drive, kDriveLunKey)] = std::to_string(lun);
}
