// The port that a diagnostic command runs on: how every one of them begins.
#pragma once

#include "framework/device_library/port_entry.h"
#include "framework/status.h"
#include "framework/words.h"

// Resolves the port identifier in word 0 and stores its entry in `fc`. Returns the status of the look-up, and
// kVirtualPort for a virtual port. `class_name` words the log line.
StatusCode SelectTestPort(const char* class_name, const Words& words, const FCProtocolEntry*& fc);

inline bool IsLinkUp(const FCProtocolEntry& fc) {
  return fc.port_state == 1;
}

// True when the driver knows the port to be in maintenance mode.
inline bool IsInMaintenanceMode(const FCProtocolEntry& fc) {
  constexpr std::uint8_t kDriverFlag = 0x04;
  constexpr std::uint8_t kPortFlag = 0x01;
  return (fc.driver_flags & kDriverFlag) != 0 && (fc.port_flags & kPortFlag) != 0;
}
