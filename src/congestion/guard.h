// What a port must have and allow before a congestion command runs.
#pragma once

#include <cstdint>
#include <span>

#include "framework/device_library/records.h"
#include "framework/status.h"

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

// The row that the commands behind the guard share.
inline constexpr StatusMessage kDriverLacksFeature = {
    kNotSupportedByDriver, "Failed, Driver/Firmware does not support this feature"};
