#include "congestion/vocabulary.h"

#include "framework/code_text.h"
#include "framework/device_library/families.h"

namespace {

constexpr const char* kReserved = "Reserved";

constexpr CodeText kLinkEvents[] = {
    {0, "Unknown"},
    {1, "Link Failure"},
    {2, "Loss Of Sync"},
    {3, "Loss Of Signal"},
    {4, "Primitive Sequence Protocol Error"},
    {5, "Invalid Transmission Word"},
    {6, "Invalid CRC"},
    {15, "Device Specific"},
};

constexpr CodeText kDeliveryReasons[] = {
    {0, "Unknown"},
    {1, "Timeout"},
    {2, "Unable To Route"},
    {15, "Device Specific"},  // the last row: ports alone
};
constexpr auto kTargetDeliveryReasons = std::span(kDeliveryReasons).first<3>();

constexpr CodeText kCongestionEvents[] = {
    {0, "Clear"}, {1, "Lost Credit"}, {2, "Credit Stall"}, {3, "Oversubscription"}, {15, "Device Specific"},
};

constexpr CodeText kSeverities[] = {{0, "None"}, {0xF1, "Warning"}, {0xF7, "Alarm"}};

constexpr CodeText kCongestionStates[] = {{0, "Healthy"}, {1, "Congested"}};

constexpr CodeText kPortLanes[] = {{1, "Operational"}, {2, "Non-Operational"}};
constexpr CodeText kTargetLanes[] = {{1, "Slow"}, {2, "Normal"}, {3, "Fast"}};

constexpr CodeText kThrottlingStates[] = {{1, "None"}, {2, "Active"}};

const char* ThrottlingText(const FCProtocolEntry& fc, std::uint8_t state) {
  return TextOfCode(kThrottlingStates, state, HasCapability(fc, kIoThrottling) ? "Disabled" : "None");
}

}  // namespace

const char* PortStateText(const FCProtocolEntry& fc) {
  switch (fc.port_state) {
    case PortState::kLinkUp:
      return "Online";
    case PortState::kOffline:
      return "Offline";
  }
  return "Unknown";
}

const char* LinkEventText(std::uint16_t type) {
  return TextOfCode(kLinkEvents, type, kReserved);
}

const char* PortDeliveryReasonText(std::uint16_t reason) {
  return TextOfCode(kDeliveryReasons, reason, kReserved);
}

const char* TargetDeliveryReasonText(std::uint16_t reason) {
  return TextOfCode(kTargetDeliveryReasons, reason, kReserved);
}

const char* CongestionEventText(std::uint16_t type) {
  return TextOfCode(kCongestionEvents, type, kReserved);
}

const char* CongestionSeverityText(std::uint8_t severity) {
  return TextOfCode(kSeverities, severity, kReserved);
}

const char* CongestionStateText(std::uint8_t state) {
  return TextOfCode(kCongestionStates, state);
}

const char* FabricConnectionText(std::uint8_t flags) {
  constexpr unsigned kCompleted = 1;
  constexpr unsigned kBrocade = 2;
  constexpr unsigned kCisco = 4;
  if ((flags & kCompleted) == 0) return "RDF Reject";
  if ((flags & kBrocade) != 0) return "RDF Completed (Brocade)";
  if ((flags & kCisco) != 0) return "RDF Completed (Cisco)";
  return "RDF Completed";
}

const char* PortVirtualLaneText(const FCProtocolEntry& fc) {
  constexpr const char* kDisabled = "Disabled";
  return IsDeviceGroupDahlia(fc.pci) ? TextOfCode(kPortLanes, fc.virtual_lane, kDisabled) : kDisabled;
}

const char* TargetVirtualLaneText(const FCProtocolEntry& fc, const TargetEntry& target) {
  if (!IsDeviceGroupDahlia(fc.pci)) return "NA";
  return TextOfCode(kTargetLanes, target.virtual_lane,
                    HasCapability(fc, kVirtualLanes) ? "Non-Operational" : "NA");
}

const char* PortThrottlingText(const FCProtocolEntry& fc) {
  return HasCongestionManagement(fc.pci) ? ThrottlingText(fc, fc.io_throttling) : "NA";
}

const char* TargetThrottlingText(const FCProtocolEntry& fc, const TargetEntry& target) {
  return HasCongestionManagement(fc.pci) ? ThrottlingText(fc, target.io_throttling) : "None";
}
