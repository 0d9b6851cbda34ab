#include "config/boot_config_ext.h"

#include <algorithm>
#include <optional>

#include "config/boot_config.h"
#include "config/boot_options.h"
#include "config/nvme_boot.h"
#include "config/record_fields.h"
#include "framework/device_library/families.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"

namespace {

constexpr std::size_t kNvmeReportBytes = 8192;
constexpr const char* kNvmeEnableKey = "NVMe_Enable";

constexpr StatusMessage kMessages[] = {
    {kBootModeNeeded, "Failed, Boot parameter requires valid boot mode option"},
    kInvalidParameter,
    {kBootModeNotSupported, "Failed, UEFI/NVME boot mode not supported for this adapter"},
    kBootReadFailed,
    kHostNotFound,
    {kNoNvmeBootEntries, "Failed, NVMe Boot Config not present"},
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
    kFcpTargetOptions,
    kNvmeTargetOptions,
    kMaintenanceMode,
};

constexpr std::size_t kValueSize = 256;
constexpr StagedNode kNode = {"PhysicalPortBootConfigExtCmdsProcessor", "BootConfigExt", kBootFrame,
                              kMessages, kValueSize};

constexpr BootModeName kModes[] = {
    {BootMode::kBios, "BIOS", 1},
    {BootMode::kUefi, "UEFI", 2},
    {BootMode::kNvme, "NVME", 4},
};

// Also the boot entry that four options address together.
struct ExtChecks : BootChecks {
  struct Target {
    WorldWideName port_name;
    const TargetEntry* entry;  // null for the name of all zeros, which clears the boot entry
  };

  std::optional<std::uint32_t> number = {};
  std::optional<Target> target = {};
  std::optional<std::uint32_t> disk = {};
  std::optional<bool> enable = {};
};

using Option = StagedOption<ExtChecks>;

constexpr CheckResult kNvmeModeOnly = {kBootModeNeeded, "an option of the NVMe boot mode"};
constexpr CheckResult kNoSuchEntry = {kBootModeNeeded, "no boot entry of this mode and adapter"};
constexpr CheckResult kIncompleteFcpEntry = {kFcpTargetOptions, "the boot entry is not complete"};
constexpr CheckResult kIncompleteNvmeEntry = {kNvmeTargetOptions, "the boot entry is not complete"};
constexpr CheckResult kOtherProtocol = {kInvalidParameter, "a target of the other protocol"};
constexpr CheckResult kUnusableNqn = {kInvalidParameter, "the target's NQN cannot be staged"};

CheckResult AllowFcNvme(const ExtChecks& checks) {
  if (!HasBootModes(checks.fc.pci)) return kNotThisAdapter;
  return checks.mode == BootMode::kNvme ? CheckResult{} : kNvmeModeOnly;
}

CheckResult TakeEntryNumber(ExtChecks& checks, const Option&, const std::string& value) {
  constexpr std::uint32_t kLastBiosEntry = 3;
  constexpr std::uint32_t kLastEntry = 7;
  const bool all_entries = checks.mode != BootMode::kBios && HasBootModes(checks.fc.pci);
  const std::uint32_t number = NumberOf(value);
  if (number > (all_entries ? kLastEntry : kLastBiosEntry)) return kNoSuchEntry;
  checks.number = number;
  return {};
}

CheckResult TakeTarget(ExtChecks& checks, const Option&, const std::string& value) {
  ExtChecks::Target target = {};
  const char* const end = ReadName(value.c_str(), target.port_name);
  if (end == nullptr || *end != '\0') return kIncompleteName;
  if (!target.port_name.IsZero()) {
    target.entry = FindTarget(checks.fc, target.port_name);
    if (target.entry == nullptr) return kNoSuchTarget;
  }
  checks.target = target;
  return {};
}

CheckResult TakeDisk(ExtChecks& checks, const Option&, const std::string& value) {
  checks.disk = NumberOf(value);
  return {};
}

CheckResult TakeEnable(ExtChecks& checks, const Option&, const std::string& value) {
  bool flag = false;
  if (!ReadTrueFalse(value, flag)) return kNotTrueOrFalse;
  checks.enable = flag;
  return {};
}

constexpr Option kOptions[] = {
    {"--fc-nvme", "-m", kNvmeEnableKey, &AllowFcNvme, &TakeTrueFalse, 1},
    {"--boot-target-num", "-n", nullptr, nullptr, &TakeEntryNumber},
    {"--boot-target-wwpn", "-p", nullptr, nullptr, &TakeTarget},
    {"--boot-disk-num", "-o", nullptr, nullptr, &TakeDisk},
    {"--boot-target-enable", "-l", nullptr, nullptr, &TakeEnable},
};

// The options that address an entry come as a set: without NVMe the enable flag is no part of it, and means
// nothing.
CheckResult CheckComplete(const ExtChecks& checks, bool& addressed) {
  const bool nvme = checks.mode == BootMode::kNvme;
  const int given = static_cast<int>(checks.number.has_value()) +
                    static_cast<int>(checks.target.has_value()) + static_cast<int>(checks.disk.has_value()) +
                    static_cast<int>(nvme && checks.enable.has_value());
  addressed = given > 0;
  if (!addressed || given == (nvme ? 4 : 3)) return {};
  return nvme ? kIncompleteNvmeEntry : kIncompleteFcpEntry;
}

CheckResult CheckTarget(const ExtChecks& checks) {
  const TargetEntry* const target = checks.target->entry;
  if (target == nullptr) return {};
  const bool nvme = checks.mode == BootMode::kNvme;
  if (IsNvmeTarget(*target) != nvme) return kOtherProtocol;
  if (!HasLun(*target, *checks.disk)) return kNoSuchLun;
  return !nvme || IsStageable(target->nqn.View()) ? CheckResult{} : kUnusableNqn;
}

// Adds the keys of the addressed entry. A cleared one has the disk 0 and nothing of a target.
void AddEntry(const ExtChecks& checks) {
  const TargetEntry* const target = checks.target->entry;
  const std::uint32_t disk = target == nullptr ? 0 : *checks.disk;
  if (checks.mode != BootMode::kNvme) {
    return AddDrive(*checks.number, checks.target->port_name, disk, checks.values);
  }
  NVMeBootEntry entry = {};
  entry.port_name = checks.target->port_name;
  entry.namespace_id = disk;
  entry.enable = *checks.enable ? 1 : 0;
  if (target != nullptr) {
    entry.node_name = target->node_name;
    entry.controller_id = target->controller_id;
    entry.nqn = target->nqn;
  }
  AddNvmeEntry(*checks.number, entry, checks.values);
}

StatusCode TakeEntry(const ExtChecks& checks) {
  bool addressed = false;
  CheckResult result = CheckComplete(checks, addressed);
  if (result.status == kSuccess && addressed) result = CheckTarget(checks);
  if (result.status != kSuccess) {
    LogRefusal("boot entry", "", result);
  } else if (addressed) {
    AddEntry(checks);
  }
  return result.status;
}

}  // namespace

BootConfigExt::BootConfigExt() : BootSettings(kNode, kModes) {}

bool BootConfigExt::MustChangeFrom(std::uint8_t current) const {
  return current != static_cast<std::uint8_t>(Mode());
}

// Every failure has one status, deliberately also in maintenance mode.
StatusCode BootConfigExt::ReadNvmeDevice() {
  nvme_ = {};
  const StatusCode status =
      CallLibraryWithOneStatus(node_.class_name, "Get NVMe boot entries", kNoNvmeBootEntries,
                               [&] { return TORPI_GetNVMeBootDeviceEntries(&Fc().handle, &nvme_); });
  if (status != kSuccess) nvme_ = {};
  nvme_enabled_ = AnyEnabled(nvme_);
  return status;
}

// `set` learns only from the file whether it needs the NVMe entries.
StatusCode BootConfigExt::ReadDevice() {
  if (const StatusCode status = BootSettings::ReadDevice(); status != kSuccess) return status;
  if (Command() == StagedCommand::kSet || Mode() != BootMode::kNvme) return kSuccess;
  const StatusCode status = ReadNvmeDevice();
  // `setFile` deliberately goes on without the entries.
  return Command() == StagedCommand::kSetFile && status == kNoNvmeBootEntries ? kSuccess : status;
}

StagedValues BootConfigExt::AllValues() const {
  StagedValues values = BootSettings::AllValues();
  values[kNvmeEnableKey] = std::to_string(static_cast<int>(nvme_enabled_));
  if (HasBootModes()) AddNvmeEntries(nvme_, values);
  return values;
}

StatusCode BootConfigExt::CheckOptions(const Words& words, const StagedFile& file,
                                       StagedValues& values) const {
  AddMode(values);
  ExtChecks checks = {{{Fc(), file, values}, Mode()}};
  if (const StatusCode status = TakeCommonOptions(words, checks); status != kSuccess) return status;
  if (const StatusCode status = TakeOptions<ExtChecks>(kOptions, words, checks); status != kSuccess) {
    return status;
  }
  return TakeEntry(checks);
}

StatusCode BootConfigExt::ReadMode(const StagedFile& file) {
  std::uint32_t staged = 0;
  if (!file.FindNumber(kBootModeKey, staged)) return kSuccess;
  const auto* const found = std::find_if(std::begin(kModes), std::end(kModes),
                                         [&](const BootModeName& name) { return name.staged == staged; });
  if (found == std::end(kModes)) return kInvalidParameter;
  SetMode(found->mode);
  return kSuccess;
}

StatusCode BootConfigExt::ReadFile(const StagedFile& file) {
  if (const StatusCode status = ReadMode(file); status != kSuccess) return status;
  if (Command() == StagedCommand::kSet && Mode() == BootMode::kNvme && HasBootModes()) {
    if (const StatusCode status = ReadNvmeDevice(); status != kSuccess) return status;
  }
  if (const StatusCode status = ReadBootRecord(file); status != kSuccess) return status;
  std::uint32_t enabled = nvme_enabled_ ? 1 : 0;
  file.FindNumber(kNvmeEnableKey, enabled);
  if (enabled > 1) return kInvalidParameter;
  nvme_enabled_ = enabled == 1;
  return ReadNvmeEntries(file, nvme_);
}

// The boot record first: a failure of the entries leaves it applied.
StatusCode BootConfigExt::WriteDevice() {
  if (const StatusCode status = BootSettings::WriteDevice(); status != kSuccess) return status;
  if (Mode() != BootMode::kNvme || !HasBootModes()) return kSuccess;
  const StatusCode written = CallLibrary(node_.class_name, "Set NVMe boot entries", kUpdateFailed, [&] {
    return TORPI_SetNVMeBootDeviceEntries(&Fc().handle, &nvme_);
  });
  if (written != kSuccess) return written;
  nvme_ = {};
  return CallLibrary(node_.class_name, "Get NVMe boot entries", kReadFailed,
                     [&] { return TORPI_GetNVMeBootDeviceEntries(&Fc().handle, &nvme_); });
}

StatusCode BootConfigExt::Display(Serializer& out, OutputMode mode, RebootField reboot) const {
  if (Mode() != BootMode::kNvme) return BootSettings::Display(out, mode, reboot);
  ReportText text(kNvmeReportBytes);
  if (!text.Allocated()) return DisplayNoMemory(out, mode);
  LoginLines(text);
  FlagLine(text, "FC NVMe", nvme_enabled_);
  TextOrNaLine(text, "Host NQN", Fc().host_nqn.View());
  HostIdLine(text, "Host ID", Fc().host_id);
  NvmeEntryLines(text, nvme_);
  return WriteText(out, mode, text, reboot);
}
