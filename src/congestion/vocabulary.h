// The words for the congestion state of ports and targets.
#pragma once

#include <cstdint>

#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

// "Online", "Offline", or "Unknown" for another state.
const char* PortStateText(const FCProtocolEntry& fc);

// What the fabric has notified: event types and reasons of FC-LS (Fabric Performance Impact Notification),
// "Reserved" outside the table. A target's delivery reason deliberately has no "Device Specific".
const char* LinkEventText(std::uint16_t type);
const char* PortDeliveryReasonText(std::uint16_t reason);
const char* TargetDeliveryReasonText(std::uint16_t reason);
const char* CongestionEventText(std::uint16_t type);

// The severity of a congestion signal (FC-LS).
const char* CongestionSeverityText(std::uint8_t severity);

// 0 "Healthy", 1 "Congested", others "Unknown".
const char* CongestionStateText(std::uint8_t state);

// What the port and the fabric have agreed on in their exchange of RDF (Register Diagnostic Functions,
// FC-LS).
const char* FabricConnectionText(std::uint8_t flags);

// Whether the virtual lanes of a port are in use; "Disabled" on adapters without them.
const char* PortVirtualLaneText(const FCProtocolEntry& fc);

// How fast the lane is that a target's traffic takes; "NA" on adapters without virtual lanes. The codes are
// others than a port's.
const char* TargetVirtualLaneText(const FCProtocolEntry& fc, const TargetEntry& target);

// Whether I/O is throttled. Unlike a port, a target never shows "NA".
const char* PortThrottlingText(const FCProtocolEntry& fc);
const char* TargetThrottlingText(const FCProtocolEntry& fc, const TargetEntry& target);
