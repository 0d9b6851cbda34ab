#include "congestion/guard.h"

#include "congestion/vocabulary.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "runtime/debug_log.h"

namespace {

StatusCode ReadEnabled(const char* class_name, const FCProtocolEntry& fc, std::uint8_t& enabled) {
  return CallLibrary(class_name, "Get VCLM feature", kReadFailed,
                     [&] { return TORPI_IsVCLMFeatureEnabled(&fc.handle, &enabled); });
}

StatusCode CheckEnabled(const char* class_name, const FCProtocolEntry& fc) {
  std::uint8_t enabled = 0;
  if (const StatusCode status = ReadEnabled(class_name, fc, enabled); status != kSuccess) return status;
  return enabled != 0 ? kSuccess : kFeatureDisabled;
}

StatusCode Check(const char* class_name, const FCProtocolEntry& fc, GuardCheck check) {
  const auto has = [&fc](std::uint32_t capability) {
    return HasCapability(fc, capability) ? kSuccess : kNotSupportedByDriver;
  };
  switch (check) {
    case GuardCheck::kFamily:
      return HasCongestionManagement(fc.pci) ? kSuccess : kFeatureNotSupported;
    case GuardCheck::kAnyGeneration:
      return has(kFirstCongestionStatistics | kSecondCongestionStatistics);
    case GuardCheck::kSecondGeneration:
      return has(kSecondCongestionStatistics);
    case GuardCheck::kPhysicalPort:
      return IsVirtualPort(fc) ? kVirtualPort : kSuccess;
    case GuardCheck::kEnabled:
      return CheckEnabled(class_name, fc);
    case GuardCheck::kEnabledOneStatus: {
      const StatusCode status = CheckEnabled(class_name, fc);
      return status == kMaintenanceMode ? kReadFailed : status;
    }
  }
  return kSuccess;
}

const char* WhyRefused(StatusCode status) {
  switch (status) {
    case kFeatureNotSupported:
      return "Command not supported for this adapter";
    case kNotSupportedByDriver:
      return "Driver/Firmware does not support SCM";
    case kVirtualPort:
      return "Command not supported for vport";
    case kFeatureDisabled:
      return "SCM is disabled on the port";
    default:
      return nullptr;  // a failed call, which has been logged
  }
}

}  // namespace

StatusCode CheckGuard(const char* class_name, const FCProtocolEntry& fc, std::span<const GuardCheck> checks) {
  for (const GuardCheck check : checks) {
    const StatusCode status = Check(class_name, fc, check);
    if (status == kSuccess) continue;
    if (const char* const why = WhyRefused(status); why != nullptr) {
      DebugLogLevel(kDebugFailure, "%s: %s", class_name, why);
    }
    return status;
  }
  return kSuccess;
}

StatusCode OpenPort(const char* class_name, const Words& words, std::span<const GuardCheck> checks,
                    PortSelection& selected) {
  const StatusCode status = GetPhyPortFromPortString(words, selected);
  return status == kSuccess ? CheckGuard(class_name, *selected.fc, checks) : status;
}

StatusCode OpenTarget(const char* class_name, const Words& words, std::span<const GuardCheck> checks,
                      TargetSelection& selected) {
  const StatusCode status = GetTargetFromTargetString(words, selected);
  return status == kSuccess ? CheckGuard(class_name, *selected.fc, checks) : status;
}
