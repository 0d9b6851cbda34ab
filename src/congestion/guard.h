// What a port must have and allow before a congestion command runs.
#pragma once

#include <cstdint>
#include <span>

#include "discovery/port_lookup.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"
#include "framework/words.h"

// One check and the status of its failure.
enum class GuardCheck : std::uint8_t {
  kFamily,            // an adapter with congestion management: kFeatureNotSupported
  kAnyGeneration,     // statistics of either generation: kNotSupportedByDriver
  kSecondGeneration,  // those of the second one: kNotSupportedByDriver
  kPhysicalPort,      // kVirtualPort
  kEnabled,           // asks the library: kFileNotFound, kMaintenanceMode or kReadFailed; when it is off:
                      // kFeatureDisabled
  kEnabledOneStatus,  // the same with kReadFailed for every failure of the call, deliberately also in
                      // maintenance mode
};

// Makes the checks in the order of the list and returns the status of the first that fails, or kSuccess.
StatusCode CheckGuard(const char* class_name, const FCProtocolEntry& fc, std::span<const GuardCheck> checks);

// How every congestion command begins: looks up what the identifier in word 0 names and makes the checks on
// its port. Each returns the status of the look-up or of the first check that fails, or kSuccess.
StatusCode OpenPort(const char* class_name, const Words& words, std::span<const GuardCheck> checks,
                    PortSelection& selected);
StatusCode OpenTarget(const char* class_name, const Words& words, std::span<const GuardCheck> checks,
                      TargetSelection& selected);

// The row that the commands behind the guard share.
inline constexpr StatusMessage kDriverLacksFeature = {
    kNotSupportedByDriver, "Failed, Driver/Firmware does not support this feature"};
