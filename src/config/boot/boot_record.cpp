#include "config/boot/boot_record.h"

#include <cstddef>
#include <string>

#include "config/boot/boot_drives.h"
#include "config/staged/staged_parameter.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 2048;

constexpr CheckResult kLegacyModeOnly = {kNotForBootMode, "an option of the legacy boot mode"};
constexpr CheckResult kOtherModesOnly = {kBootModeNeeded, "no option of the legacy boot mode"};

CheckResult AllowAlways(const FCProtocolEntry&, BootMode) {
  return {};
}

CheckResult AllowFabricAssignedLun(const FCProtocolEntry& fc, BootMode) {
  return HasFabricAssignment(fc.pci) ? CheckResult{} : kNotThisAdapter;
}

CheckResult AllowInBios(const FCProtocolEntry&, BootMode mode) {
  return mode == BootMode::kBios ? CheckResult{} : kLegacyModeOnly;
}

struct BootFlag {
  StagedParameter staged;
  CheckResult (*allow)(const FCProtocolEntry& fc, BootMode mode);
};

consteval StagedParameter Flag(ParameterName key, ParameterName log_name, std::size_t offset,
                               OptionName option) {
  return {.key = key,
          .log_name = log_name,
          .offset = offset,
          .width = sizeof(std::uint32_t),
          .form = ParameterForm::kFlag,
          .option = option};
}

consteval StagedParameter InverseFlag(ParameterName key, ParameterName log_name, std::size_t offset,
                                      OptionName option) {
  StagedParameter parameter = Flag(key, log_name, offset, option);
  parameter.form = ParameterForm::kInverseFlag;
  return parameter;
}

// In the order in which options and a file's values are checked.
constexpr BootFlag kFlags[] = {
    {InverseFlag("Disable_BIOS", "DisableBIOS", offsetof(HBAParamsInfo, disable_bios),
                 {"--enable-bfs", "-a"}),
     &AllowAlways},
    {Flag("Fabric_Assigned_Boot_Lun", "EnableFabricAssignBootLun",
          offsetof(HBAParamsInfo, enable_fabric_assign_boot_lun), {"--fabric-assigned-boot-lun", "-f"}),
     &AllowFabricAssignedLun},
    {Flag("Selectable_Boot", "EnableSelectableBoot", offsetof(HBAParamsInfo, enable_selectable_boot),
          {"--selectable-boot", "-d"}),
     &AllowInBios},
    {Flag("Selective_Login", "EnableSelectiveLogin", offsetof(HBAParamsInfo, enable_selective_login),
          {"--selective-login", "-e"}),
     &AllowOutsideBios},
    {Flag("Selective_LUN_Login", "EnableSelectiveLUN", offsetof(HBAParamsInfo, enable_selective_lun),
          {"--selective-lun-login", "-c"}),
     &AllowOutsideBios},
    {Flag("World_Login", "ForceWorldLogin", offsetof(HBAParamsInfo, force_world_login),
          {"--world-login", "-g"}),
     &AllowOutsideBios},
};

void DriveLines(ReportText& text, const HBAParamsInfo& info, std::size_t count) {
  for (std::size_t drive = 0; drive < count; ++drive) {
    const BootDrive& boot_drive = info.*BootDrives()[drive].drive;
    const std::string label = "Drive " + std::to_string(drive);
    NameLine(text, (label + " WWPN").c_str(), boot_drive.port_name);
    NumberLine(text, (label + " LUN").c_str(), boot_drive.lun);
  }
}

}  // namespace

StatusCode BootRecord::ReadDevice(const CommandRun& run) {
  info_ = {};
  const StatusCode status = CallLibrary(run, "Get boot device info", kReadFailed,
                                        [&] { return TORPI_GetBootDeviceInfo(&fc_.handle, &info_, 0); });
  if (status != kSuccess) return status;
  for (const BootFlag& flag : TableOf<kFlags>()) LogValue(run, flag.staged, &info_);
  for (const BootDriveRow& row : BootDrives()) {
    LogValue(run, row.port_name, &(info_.*row.drive));
    LogValue(run, row.lun, &(info_.*row.drive));
  }
  return kSuccess;
}

StatusCode BootRecord::WriteDevice(const CommandRun& run) const {
  return CallLibrary(run, "Set boot device info", kUpdateFailed,
                     [&] { return TORPI_SetBootDeviceInfo(&fc_.handle, &info_); });
}

void BootRecord::AddAll(StagedValues& values) const {
  for (const BootFlag& flag : TableOf<kFlags>()) AddValue(flag.staged, &info_, values);
  for (const BootDriveRow& row : BootDrives()) {
    AddValue(row.port_name, &(info_.*row.drive), values);
    AddValue(row.lun, &(info_.*row.drive), values);
  }
}

StatusCode BootRecord::ReadFile(const CommandRun& run, const StagedFile& file) {
  for (const BootFlag& flag : TableOf<kFlags>()) {
    if (const StatusCode status = ReadValue(run, flag.staged, file, &info_); status != kSuccess) {
      return status;
    }
  }
  for (const BootDriveRow& row : BootDrives()) {  // which have no rule to break
    ReadValue(run, row.port_name, file, &(info_.*row.drive));
    ReadValue(run, row.lun, file, &(info_.*row.drive));
  }
  return kSuccess;
}

void BootRecord::LoginLines(ReportText& text) const {
  FirstTextLine(text, "Adapter Driver", BoolText(info_.disable_bios == 0));
  FlagLine(text, "Selective Login", info_.enable_selective_login != 0);
  FlagLine(text, "Selective LUN Login", info_.enable_selective_lun != 0);
  FlagLine(text, "World Login", info_.force_world_login != 0);
  FlagLine(text, "Fabric Assigned Boot LUN", info_.enable_fabric_assign_boot_lun != 0);
}

StatusCode BootRecord::Display(CommandRun& run, BootMode mode, RebootField reboot) const {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  if (mode == BootMode::kBios) {
    FirstTextLine(text, "Adapter BIOS", BoolText(info_.disable_bios == 0));
    FlagLine(text, "Selectable Boot", info_.enable_selectable_boot != 0);
    if (HasFabricAssignment(fc_.pci)) {
      FlagLine(text, "Fabric Assigned Boot LUN", info_.enable_fabric_assign_boot_lun != 0);
    }
    DriveLines(text, info_, kBiosDrives);
  } else {
    LoginLines(text);
    DriveLines(text, info_, BootDrives().size());
  }
  return run.DisplayReport(text, reboot);
}

StatusCode TakeBootFlags(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode,
                         StagedValues& changes) {
  for (const BootFlag& flag : TableOf<kFlags>()) {
    const StatusCode status = TakeOption(run, flag.staged.option, [&](const std::string& value) {
      const CheckResult allowed = flag.allow(fc, mode);
      return allowed.status == kSuccess ? TakeValue(flag.staged, value, changes) : allowed;
    });
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

CheckResult AllowOutsideBios(const FCProtocolEntry& fc, BootMode mode) {
  if (!HasBootModes(fc.pci)) return kNotThisAdapter;
  return mode == BootMode::kBios ? kOtherModesOnly : CheckResult{};
}
