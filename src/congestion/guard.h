// What a port must have and allow before a congestion command runs.
#pragma once

#include <cstdint>
#include <span>

#include "discovery/port_lookup.h"
#include "framework/command_run.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"

// One check and the status of its failure.
enum class GuardCheck : std::uint8_t {
  kFamily,            // an adapter with congestion management: kFeatureNotSupported
  kAnyGeneration,     // statistics of either generation: kNotSupportedByDriver
  kSecondGeneration,  // those of the second one: kNotSupportedByDriver
  kPhysicalPort,      // kVirtualPort
  kEnabled,           // asks the library: kFileNotFound, kMaintenanceMode or kReadFailed; when it is off:
                      // kFeatureDisabled
  kEnabledOneStatus,  // the same, but with kReadFailed in maintenance mode too
};

// Makes the checks in the order of the list and returns the status of the first that fails, or kSuccess. A
// failure is in the debug log.
StatusCode CheckGuard(const CommandRun& run, const FCProtocolEntry& fc, std::span<const GuardCheck> checks);

// How every congestion command begins: looks up what the identifier in word 0 names and makes the checks on
// its port. Each returns the status of the look-up or of the first check that fails, or kSuccess.
StatusCode SelectGuardedPort(CommandRun& run, std::span<const GuardCheck> checks, PortSelection& selected);
StatusCode SelectGuardedTarget(CommandRun& run, std::span<const GuardCheck> checks,
                               TargetSelection& selected);

// The row that the commands with a guard share.
inline constexpr StatusMessage kDriverLacksFeature = {
    kNotSupportedByDriver, "Failed, Driver/Firmware does not support this feature"};
