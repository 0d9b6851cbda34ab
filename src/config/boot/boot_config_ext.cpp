#include "config/boot/boot_config_ext.h"

#include <algorithm>
#include <string>

#include "config/boot/boot_entry.h"
#include "config/boot/nvme_boot.h"
#include "config/options.h"
#include "config/staged/staged_parameter.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"

namespace {

constexpr std::size_t kNvmeReportBytes = 8192;

constexpr BootModeName kModeNames[] = {
    {BootMode::kBios, "BIOS", 1},
    {BootMode::kUefi, "UEFI", 2},
    {BootMode::kNvme, "NVME", 4},
};
constexpr BootModes kModes = {kModeNames, /*leaves_unknown_mode=*/false};

constexpr CheckResult kNvmeModeOnly = {kBootModeNeeded, "an option of the NVMe boot mode"};

constexpr StagedParameter kNvmeEnable = {.key = "NVMe_Enable",
                                         .width = sizeof(std::uint32_t),
                                         .form = ParameterForm::kFlag,
                                         .option = {"--fc-nvme", "-m"}};

CheckResult TakeFcNvme(const FCProtocolEntry& fc, BootMode mode, const std::string& value,
                       StagedValues& changes) {
  if (!HasBootModes(fc.pci)) return kNotThisAdapter;
  return mode == BootMode::kNvme ? TakeValue(kNvmeEnable, value, changes) : kNvmeModeOnly;
}

}  // namespace

// Intended: every failure has one status, also in maintenance mode.
StatusCode BootConfigExt::ReadNvmeDevice(const CommandRun& run) {
  nvme_ = {};
  const StatusCode status = CallLibraryWithOneStatus(run, "Get NVMe boot entries", kNoNvmeBootEntries, [&] {
    return TORPI_GetNVMeBootDeviceEntries(&fc_.handle, &nvme_);
  });
  if (status != kSuccess) nvme_ = {};
  nvme_enable_ = AnyEnabled(nvme_) ? 1 : 0;
  return status;
}

// `set` learns only from the file whether it needs the NVMe entries, and writes in whatever mode the library
// is in.
StatusCode BootConfigExt::Open(CommandRun& run, StagedCommand command) {
  command_ = command;
  if (command == StagedCommand::kSet) return record_.ReadDevice(run);
  if (const StatusCode status = ChooseBootMode(run, kModes, fc_, mode_); status != kSuccess) return status;
  if (const StatusCode status = record_.ReadDevice(run); status != kSuccess) return status;
  if (!IsNvme()) return kSuccess;
  const StatusCode status = ReadNvmeDevice(run);
  // Intended: `setFile` goes on without the entries.
  return command == StagedCommand::kSetFile && status == kNoNvmeBootEntries ? kSuccess : status;
}

void BootConfigExt::AddAll(StagedValues& values) const {
  AddBootMode(kModes, mode_, values);
  record_.AddAll(values);
  AddValue(kNvmeEnable, &nvme_enable_, values);
  if (HasBootModes(fc_.pci)) AddNvmeEntries(nvme_, values);
}

StatusCode BootConfigExt::TakeOptions(CommandRun& run, const StagedFile&, StagedValues& changes) const {
  AddBootMode(kModes, mode_, changes);
  if (const StatusCode status = TakeBootFlags(run, fc_, mode_, changes); status != kSuccess) return status;
  const StatusCode status = TakeOption(run, kNvmeEnable.option, [&](const std::string& value) {
    return TakeFcNvme(fc_, mode_, value, changes);
  });
  if (status != kSuccess) return status;
  return TakeBootEntry(run, fc_, mode_, changes);
}

StatusCode BootConfigExt::ReadMode(const CommandRun& run, const StagedFile& file) {
  std::uint32_t staged = 0;
  if (!file.FindNumber(kBootModeKey, staged)) return kSuccess;
  const auto* const found = std::find_if(std::begin(kModeNames), std::end(kModeNames),
                                         [&](const BootModeName& name) { return name.staged == staged; });
  if (found == std::end(kModeNames)) {
    return run.Refuse(kInvalidParameter, "%s=%u is out of range", kBootModeKey, staged);
  }
  mode_ = found->mode;
  LogBootMode(run, mode_);
  return kSuccess;
}

// The entries are read and checked in every mode.
StatusCode BootConfigExt::ReadFile(CommandRun& run, const StagedFile& file) {
  if (const StatusCode status = ReadMode(run, file); status != kSuccess) return status;
  if (command_ == StagedCommand::kSet && IsNvme() && HasBootModes(fc_.pci)) {
    if (const StatusCode status = ReadNvmeDevice(run); status != kSuccess) return status;
  }
  if (const StatusCode status = record_.ReadFile(run, file); status != kSuccess) return status;
  if (const StatusCode status = ReadValue(run, kNvmeEnable, file, &nvme_enable_); status != kSuccess) {
    return status;
  }
  return ReadNvmeEntries(run, file, nvme_);
}

// The boot record first: a failure of the entries leaves it applied.
StatusCode BootConfigExt::WriteDevice(CommandRun& run) {
  if (const StatusCode status = record_.WriteDevice(run); status != kSuccess) return status;
  if (!IsNvme() || !HasBootModes(fc_.pci)) return kSuccess;
  const StatusCode written = CallLibrary(run, "Set NVMe boot entries", kUpdateFailed,
                                         [&] { return TORPI_SetNVMeBootDeviceEntries(&fc_.handle, &nvme_); });
  if (written != kSuccess) return written;
  nvme_ = {};
  return CallLibrary(run, "Get NVMe boot entries", kReadFailed,
                     [&] { return TORPI_GetNVMeBootDeviceEntries(&fc_.handle, &nvme_); });
}

StatusCode BootConfigExt::Display(CommandRun& run, RebootField reboot) const {
  if (!IsNvme()) return record_.Display(run, mode_, reboot);
  ReportText text(kNvmeReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  record_.LoginLines(text);
  FlagLine(text, "FC NVMe", nvme_enable_ != 0);
  TextOrNaLine(text, "Host NQN", fc_.host_nqn.View());
  HostIdLine(text, "Host ID", fc_.host_id);
  NvmeEntryLines(text, nvme_);
  return run.DisplayReport(text, reboot);
}
