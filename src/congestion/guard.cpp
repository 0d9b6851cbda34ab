#include "congestion/guard.h"

#include "congestion/vocabulary.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"

namespace {

StatusCode CheckFamily(const CommandRun& run, const FCProtocolEntry& fc) {
  if (HasCongestionManagement(fc.pci)) return kSuccess;
  return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
}

StatusCode CheckCapability(const CommandRun& run, const FCProtocolEntry& fc, std::uint32_t capabilities) {
  if (HasCapability(fc, capabilities)) return kSuccess;
  return run.Refuse(kNotSupportedByDriver, "Driver/Firmware does not support SCM");
}

StatusCode CheckEnabled(const CommandRun& run, const FCProtocolEntry& fc) {
  std::uint8_t enabled = 0;
  const StatusCode status = CallLibrary(run, "Get VCLM feature", kReadFailed,
                                        [&] { return TORPI_IsVCLMFeatureEnabled(&fc.handle, &enabled); });
  if (status != kSuccess) return status;
  return enabled != 0 ? kSuccess : run.Refuse(kFeatureDisabled, "SCM is disabled on the port");
}

StatusCode Check(const CommandRun& run, const FCProtocolEntry& fc, GuardCheck check) {
  switch (check) {
    case GuardCheck::kFamily:
      return CheckFamily(run, fc);
    case GuardCheck::kAnyGeneration:
      return CheckCapability(run, fc, kFirstCongestionStatistics | kSecondCongestionStatistics);
    case GuardCheck::kSecondGeneration:
      return CheckCapability(run, fc, kSecondCongestionStatistics);
    case GuardCheck::kPhysicalPort:
      return CheckPhysical(run, fc);
    case GuardCheck::kEnabled:
      return CheckEnabled(run, fc);
    case GuardCheck::kEnabledOneStatus: {
      const StatusCode status = CheckEnabled(run, fc);
      return status == kMaintenanceMode ? kReadFailed : status;
    }
  }
  return kSuccess;
}

}  // namespace

StatusCode CheckGuard(const CommandRun& run, const FCProtocolEntry& fc, std::span<const GuardCheck> checks) {
  for (const GuardCheck check : checks) {
    if (const StatusCode status = Check(run, fc, check); status != kSuccess) return status;
  }
  return kSuccess;
}

StatusCode SelectGuardedPort(CommandRun& run, std::span<const GuardCheck> checks, PortSelection& selected) {
  const StatusCode status = SelectPort(run, selected);
  return status == kSuccess ? CheckGuard(run, *selected.fc, checks) : status;
}

StatusCode SelectGuardedTarget(CommandRun& run, std::span<const GuardCheck> checks,
                               TargetSelection& selected) {
  const StatusCode status = SelectTarget(run, selected);
  return status == kSuccess ? CheckGuard(run, *selected.fc, checks) : status;
}
