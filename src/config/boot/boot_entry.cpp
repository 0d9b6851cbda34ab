#include "config/boot/boot_entry.h"

#include <cstdint>
#include <optional>
#include <string>

#include "config/boot/boot_drives.h"
#include "config/boot/nvme_boot.h"
#include "config/options.h"
#include "config/staged/staged_parameter.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/families.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"

namespace {

constexpr OptionName kNumberOption = {"--boot-target-num", "-n"};
constexpr OptionName kTargetOption = {"--boot-target-wwpn", "-p"};
constexpr OptionName kDiskOption = {"--boot-disk-num", "-o"};
constexpr OptionName kEnableOption = {"--boot-target-enable", "-l"};

constexpr CheckResult kNoSuchEntry = {kBootModeNeeded, "no boot entry of this mode and adapter"};
constexpr CheckResult kIncompleteFcpEntry = {kFcpTargetOptions, "the boot entry is not complete"};
constexpr CheckResult kIncompleteNvmeEntry = {kNvmeTargetOptions, "the boot entry is not complete"};
constexpr CheckResult kOtherProtocol = {kInvalidParameter, "a target of the other protocol"};
constexpr CheckResult kUnusableNqn = {kInvalidParameter, "the target's NQN cannot be staged"};

struct Target {
  WorldWideName port_name;
  const TargetEntry* entry;  // null for the name of all zeros, which clears the boot entry
};

// What the user has given.
struct Address {
  std::optional<std::uint32_t> number = {};
  std::optional<Target> target = {};
  std::optional<std::uint32_t> disk = {};
  std::optional<bool> enable = {};
};

CheckResult ReadEntryNumber(const FCProtocolEntry& fc, BootMode mode, const std::string& value,
                            Address& address) {
  constexpr std::uint32_t kLastBiosEntry = 3;
  constexpr std::uint32_t kLastEntry = 7;
  const bool all_entries = mode != BootMode::kBios && HasBootModes(fc.pci);
  address.number = ReadNumber(value, {.limit = all_entries ? kLastEntry : kLastBiosEntry});
  return address.number.has_value() ? CheckResult{} : kNoSuchEntry;
}

CheckResult ReadTarget(const FCProtocolEntry& fc, const std::string& value, Address& address) {
  Target target = {};
  const char* const end = ReadName(value.c_str(), target.port_name);
  if (end == nullptr || *end != '\0') return kIncompleteName;
  if (!target.port_name.IsZero()) {
    target.entry = FindTarget(fc, target.port_name);
    if (target.entry == nullptr) return kNoSuchTarget;
  }
  address.target = target;
  return {};
}

CheckResult ReadEnable(const std::string& value, Address& address) {
  address.enable = ReadTrueFalse(value);
  return address.enable.has_value() ? CheckResult{} : kNotTrueOrFalse;
}

StatusCode ReadAddress(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode, Address& address) {
  StatusCode status = TakeOption(run, kNumberOption, [&](const std::string& value) {
    return ReadEntryNumber(fc, mode, value, address);
  });
  if (status != kSuccess) return status;
  status = TakeOption(run, kTargetOption,
                      [&](const std::string& value) { return ReadTarget(fc, value, address); });
  if (status != kSuccess) return status;
  TakeOption(run, kDiskOption, [&](const std::string& value) {
    address.disk = NumberOf(value);  // any number passes
    return CheckResult{};
  });
  return TakeOption(run, kEnableOption, [&](const std::string& value) { return ReadEnable(value, address); });
}

// Without NVMe the enable flag is no part of the set, and means nothing.
int CountOfSet(const Address& address, bool nvme) {
  return static_cast<int>(address.number.has_value()) + static_cast<int>(address.target.has_value()) +
         static_cast<int>(address.disk.has_value()) + static_cast<int>(nvme && address.enable.has_value());
}

CheckResult CheckTarget(const TargetEntry* target, std::uint32_t disk, bool nvme) {
  if (target == nullptr) return {};
  if (IsNvmeTarget(*target) != nvme) return kOtherProtocol;
  if (!HasLun(*target, disk)) return kNoSuchLun;
  return !nvme || IsStageable(target->nqn.View()) ? CheckResult{} : kUnusableNqn;
}

// Of a complete set. A cleared entry has the disk 0 and nothing of a target.
void AddEntry(const Address& address, bool nvme, StagedValues& changes) {
  const TargetEntry* const target = address.target->entry;
  const std::uint32_t disk = target == nullptr ? 0 : *address.disk;
  if (!nvme) return AddDrive(*address.number, address.target->port_name, disk, changes);
  NVMeBootEntry entry = {};
  entry.port_name = address.target->port_name;
  entry.namespace_id = disk;
  entry.enable = *address.enable ? 1 : 0;
  if (target != nullptr) {
    entry.node_name = target->node_name;
    entry.controller_id = target->controller_id;
    entry.nqn = target->nqn;
  }
  AddNvmeEntry(*address.number, entry, changes);
}

}  // namespace

StatusCode TakeBootEntry(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode,
                         StagedValues& changes) {
  Address address;
  if (const StatusCode status = ReadAddress(run, fc, mode, address); status != kSuccess) return status;
  const bool nvme = mode == BootMode::kNvme;
  const int given = CountOfSet(address, nvme);
  if (given == 0) return kSuccess;
  if (given < (nvme ? 4 : 3)) {
    return LogRefusal(run, {"boot entry"}, "", nvme ? kIncompleteNvmeEntry : kIncompleteFcpEntry);
  }
  const CheckResult result = CheckTarget(address.target->entry, *address.disk, nvme);
  if (result.status != kSuccess) {
    return LogRefusal(run, {"boot entry"}, std::to_string(*address.number), result);
  }
  AddEntry(address, nvme, changes);
  return kSuccess;
}
