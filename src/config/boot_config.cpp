#include "config/boot_config.h"

#include <cstdlib>

#include "config/boot_options.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"

namespace {

constexpr StatusMessage kMessages[] = {
    {kBootModeNeeded, "Failed, Boot parameter requires UEFI boot mode option"},
    kInvalidParameter,
    {kBootModeNotSupported, "Failed, UEFI boot mode not supported for this adapter"},
    kBootReadFailed,
    kHostNotFound,
    kNotWithUefi,
    kBootUpdateFailed,
    kAdapterNotFound,
    kFeatureNotSupported,
    kNotSupportedForNvme,
    kMemoryError,
    kBootReadOnly,
    kVirtualPort,
    kNoRomBios,
    kNoRomUefi,
    kMaintenanceMode,
};

constexpr StagedNode kNode = {"PhysicalPortBootConfigCmdsProcessor", "BootConfig", kBootFrame, kMessages};

constexpr BootModeName kModes[] = {
    {BootMode::kBios, "BIOS", 0},
    {BootMode::kUefi, "UEFI", 1},
};

constexpr CheckResult kNvmeTarget = {kNotSupportedForNvme, "an NVMe target"};

using Option = StagedOption<BootChecks>;

// Reads "WWPN-LUN", with nothing behind it.
bool ReadDrive(const char* text, WorldWideName& port_name, std::int32_t& lun) {
  const char* const name_end = ReadName(text, port_name);
  if (name_end == nullptr || *name_end != '-') return false;
  const char* const lun_text = name_end + 1;
  char* lun_end = nullptr;
  lun = static_cast<std::int32_t>(std::strtol(lun_text, &lun_end, 10));
  return lun_end != lun_text && *lun_end == '\0';
}

// A name of all zeros clears the drive.
CheckResult TakeDrive(BootChecks& checks, const Option& option, const std::string& value) {
  WorldWideName port_name;
  std::int32_t lun = 0;
  if (!ReadDrive(value.c_str(), port_name, lun)) return kIncompleteName;
  if (port_name.IsZero()) {
    lun = 0;
  } else {
    const TargetEntry* const target = FindTarget(checks.fc, port_name);
    if (target == nullptr) return kNoSuchTarget;
    if (!HasLun(*target, lun)) return kNoSuchLun;
    if (IsNvmeTarget(*target)) return kNvmeTarget;
  }
  AddDrive(option.parameter, port_name, lun, checks.values);
  return {};
}

constexpr Option Drive(const char* long_name, const char* short_name, std::uint32_t drive) {
  constexpr std::uint32_t kFirstUefiDrive = 4;
  return {long_name,  short_name, nullptr, drive < kFirstUefiDrive ? nullptr : &AllowLoginOption,
          &TakeDrive, drive};
}

constexpr Option kDriveOptions[] = {
    Drive("--drive-0", "-j", 0), Drive("--drive-1", "-k", 1), Drive("--drive-2", "-l", 2),
    Drive("--drive-3", "-m", 3), Drive("--drive-4", "-n", 4), Drive("--drive-5", "-o", 5),
    Drive("--drive-6", "-p", 6), Drive("--drive-7", "-q", 7),
};

}  // namespace

BootConfig::BootConfig() : BootSettings(kNode, kModes) {}

// A library in a mode that this form does not know is left in it.
bool BootConfig::MustChangeFrom(std::uint8_t current) const {
  const BootMode other = Mode() == BootMode::kUefi ? BootMode::kBios : BootMode::kUefi;
  return current == static_cast<std::uint8_t>(other);
}

// The mode is always among the values: a command that does not ask for UEFI puts the file back to the legacy
// mode.
StatusCode BootConfig::CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const {
  AddMode(values);
  BootChecks checks = {{Fc(), file, values}, Mode()};
  if (const StatusCode status = TakeCommonOptions(words, checks); status != kSuccess) return status;
  return TakeOptions<BootChecks>(kDriveOptions, words, checks);
}

StatusCode BootConfig::ReadFile(const StagedFile& file) {
  constexpr std::uint32_t kStagedUefi = 1;
  std::uint32_t mode = 0;
  if (file.FindNumber(kBootModeKey, mode)) SetMode(mode == kStagedUefi ? BootMode::kUefi : BootMode::kBios);
  return ReadBootRecord(file);
}
