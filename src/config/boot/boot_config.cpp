#include "config/boot/boot_config.h"

#include <cstdint>
#include <cstdlib>
#include <string>

#include "config/boot/boot_drives.h"
#include "config/options.h"

namespace {

constexpr BootModeName kModeNames[] = {
    {BootMode::kBios, "BIOS", 0},
    {BootMode::kUefi, "UEFI", 1},
};
constexpr BootModes kModes = {kModeNames, /*leaves_unknown_mode=*/true};

constexpr CheckResult kNvmeTarget = {kNotSupportedForNvme, "an NVMe target"};

// Reads "WWPN-LUN", with nothing after it.
bool ReadDrive(const char* text, WorldWideName& port_name, std::int32_t& lun) {
  const char* const name_end = ReadName(text, port_name);
  if (name_end == nullptr || *name_end != '-') return false;
  const char* const lun_text = name_end + 1;
  char* lun_end = nullptr;
  lun = static_cast<std::int32_t>(std::strtol(lun_text, &lun_end, 10));
  return lun_end != lun_text && *lun_end == '\0';
}

// A name of all zeros clears the drive.
CheckResult TakeDrive(const FCProtocolEntry& fc, std::size_t drive, const std::string& value,
                      StagedValues& changes) {
  WorldWideName port_name;
  std::int32_t lun = 0;
  if (!ReadDrive(value.c_str(), port_name, lun)) return kIncompleteName;
  if (port_name.IsZero()) {
    lun = 0;
  } else {
    const TargetEntry* const target = FindTarget(fc, port_name);
    if (target == nullptr) return kNoSuchTarget;
    if (!HasLun(*target, lun)) return kNoSuchLun;
    if (IsNvmeTarget(*target)) return kNvmeTarget;
  }
  AddDrive(drive, port_name, lun, changes);
  return {};
}

}  // namespace

StatusCode BootConfig::Open(CommandRun& run, StagedCommand command) {
  if (command != StagedCommand::kSet) {
    if (const StatusCode status = ChooseBootMode(run, kModes, fc_, mode_); status != kSuccess) return status;
  }
  return record_.ReadDevice(run);
}

void BootConfig::AddAll(StagedValues& values) const {
  AddBootMode(kModes, mode_, values);
  record_.AddAll(values);
}

// The mode is always among the changes: a command that does not ask for UEFI puts the file back to the legacy
// mode.
StatusCode BootConfig::TakeOptions(CommandRun& run, const StagedFile&, StagedValues& changes) const {
  AddBootMode(kModes, mode_, changes);
  if (const StatusCode status = TakeBootFlags(run, fc_, mode_, changes); status != kSuccess) return status;
  for (std::size_t drive = 0; drive < BootDrives().size(); ++drive) {
    const StatusCode status = TakeOption(run, BootDrives()[drive].option, [&](const std::string& value) {
      const CheckResult allowed = drive < kBiosDrives ? CheckResult{} : AllowOutsideBios(fc_, mode_);
      return allowed.status == kSuccess ? TakeDrive(fc_, drive, value, changes) : allowed;
    });
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

StatusCode BootConfig::ReadFile(CommandRun& run, const StagedFile& file) {
  constexpr std::uint32_t kStagedUefi = 1;
  std::uint32_t staged = 0;
  if (file.FindNumber(kBootModeKey, staged)) {
    mode_ = staged == kStagedUefi ? BootMode::kUefi : BootMode::kBios;
    LogBootMode(run, mode_);
  }
  return record_.ReadFile(run, file);
}

StatusCode BootConfig::WriteDevice(CommandRun& run) {
  return record_.WriteDevice(run);
}

StatusCode BootConfig::Display(CommandRun& run, RebootField reboot) const {
  return record_.Display(run, mode_, reboot);
}
