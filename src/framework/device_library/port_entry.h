// The record of the device library that describes one protocol on one port.
//
// The library owns every record, fills it and keeps it valid while it is up. The program only reads, through
// pointers to const. All numbers are little-endian; texts end at their terminator or at the end of their
// field, whichever comes first (see FixedText).
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/device_handle.h"
#include "framework/device_library/fixed_text.h"
#include "framework/device_library/pci_identity.h"
#include "framework/device_library/port_id.h"
#include "framework/device_library/world_wide_name.h"

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the records are read in place");

enum class PortInterfaceType : std::uint16_t { kPhysical = 1, kNpivVirtual = 3 };

enum class ProtocolType : std::uint32_t { kFc = 0, kFcoe = 1 };  // 2 and above: protocols not served here

enum class PortState : std::uint8_t { kLinkUp = 1, kOffline = 3 };

enum class ConnectionMode : std::uint8_t { kPointToPoint = 1, kLoop = 2 };

// Bits of `capabilities`: what the driver and the firmware can do.
inline constexpr std::uint32_t kFirstCongestionStatistics = 1u << 23;   // the first generation
inline constexpr std::uint32_t kSecondCongestionStatistics = 1u << 26;  // the second generation
inline constexpr std::uint32_t kSecondLinkTest = 1u << 29;              // TORPI_DiagnosticDPortTestV2
inline constexpr std::uint32_t kVirtualLanes = 1u << 30;
inline constexpr std::uint32_t kIoThrottling = 1u << 31;

// Bits of `driver_flags`: what the driver can do.
inline constexpr std::uint8_t kCurrentRemotePorts = 0x01;  // fills the current remote-port record of a target
inline constexpr std::uint8_t kSfpFirmwareUpdate = 0x02;
inline constexpr std::uint8_t kKnowsMaintenanceMode = 0x04;  // kMaintenanceState counts

// Bit of `port_flags`.
inline constexpr std::uint8_t kMaintenanceState = 0x01;

// Bits of `rom_flags`: the boot code that the adapter holds.
inline constexpr std::uint32_t kUefiImage = 0x02;
inline constexpr std::uint32_t kBiosImage = 0x08;

// Bit of `link_flags`.
inline constexpr std::uint16_t kFecInUse = 1u << 15;  // forward error correction on a 16 Gbps link

struct TargetEntry;

// One protocol on one port, real or virtual: nearly everything that the port commands show or act on.
struct FCProtocolEntry {
  WorldWideName node_name;
  WorldWideName port_name;
  DeviceHandle handle;
  PciIdentity pci;
  FixedText<52> driver_version;
  std::uint32_t capabilities;
  std::byte reserved_164[16];
  std::uint8_t driver_flags;
  std::byte reserved_181[3];
  std::uint8_t port_flags;
  std::byte reserved_185[211];
  FixedText<32> running_firmware_version;
  FixedText<32> flash_bios_version;
  std::byte reserved_460[2];
  PortInterfaceType interface_type;
  std::byte reserved_464[8];
  std::uint32_t rom_flags;
  std::uint8_t flash_firmware_version[4];  // major, minor, sub, unused
  std::uint8_t flash_efi_version[4];       // major, minor, unused
  std::uint8_t flash_fcode_version[4];     // major, minor, unused
  std::uint8_t running_mpi_version[4];     // major, minor, sub, unused
  std::uint8_t running_pep_version[4];     // major, minor, sub, unused
  std::byte reserved_496[112];
  PortId port_id;
  std::uint8_t port_type;
  PortState port_state;
  ConnectionMode connection_mode;
  std::byte reserved_614[38];
  std::uint32_t port_speed;  // LinkSpeed::code
  std::byte reserved_656[4];
  std::uint16_t link_flags;
  std::byte reserved_662[2];
  std::uint8_t supported_speeds;  // a mask of LinkSpeed::supported_bit
  std::byte reserved_665[3];
  WorldWideName principal_fabric_name;
  WorldWideName adjacent_fabric_name;
  std::uint16_t congestion_notifications;
  std::uint16_t link_event_type;
  std::uint32_t link_event_threshold_ms;
  std::uint16_t delivery_reason;
  std::uint16_t congestion_event_type;
  std::uint32_t congestion_event_period_ms;
  std::uint8_t congestion_severity;
  std::uint8_t fabric_connection_flags;
  std::uint8_t congestion_state;
  std::uint8_t virtual_lane;
  std::uint32_t seconds_since_event;
  std::uint8_t link_integrity_events;
  std::uint8_t delivery_notification_events;
  std::uint8_t io_throttling;
  std::byte reserved_711[41];
  std::uint32_t driver_counters[6];
  std::uint32_t firmware_counters[6];
  std::byte reserved_800[40];
  std::uint64_t congestion_alarms;
  std::uint64_t congestion_warnings;
  std::byte reserved_856[1136];
  std::uint32_t target_count;
  std::byte reserved_1996[4];
  const TargetEntry* first_target;
  std::byte reserved_2008[152];
  std::uint8_t host_id[16];
  FixedText<256> host_nqn;
  std::byte reserved_2432[240];
  std::uint8_t pci_bus;
  std::uint8_t pci_device;
  std::uint8_t pci_function;
  std::byte reserved_2675[1];
  ProtocolType protocol_type;
  const FCProtocolEntry* next;
};
static_assert(offsetof(FCProtocolEntry, node_name) == 0);
static_assert(offsetof(FCProtocolEntry, port_name) == 8);
static_assert(offsetof(FCProtocolEntry, handle) == 16);
static_assert(offsetof(FCProtocolEntry, pci) == 28);
static_assert(offsetof(FCProtocolEntry, driver_version) == 108);
static_assert(offsetof(FCProtocolEntry, capabilities) == 160);
static_assert(offsetof(FCProtocolEntry, driver_flags) == 180);
static_assert(offsetof(FCProtocolEntry, port_flags) == 184);
static_assert(offsetof(FCProtocolEntry, running_firmware_version) == 396);
static_assert(offsetof(FCProtocolEntry, flash_bios_version) == 428);
static_assert(offsetof(FCProtocolEntry, interface_type) == 462);
static_assert(offsetof(FCProtocolEntry, rom_flags) == 472);
static_assert(offsetof(FCProtocolEntry, flash_firmware_version) == 476);
static_assert(offsetof(FCProtocolEntry, flash_efi_version) == 480);
static_assert(offsetof(FCProtocolEntry, flash_fcode_version) == 484);
static_assert(offsetof(FCProtocolEntry, running_mpi_version) == 488);
static_assert(offsetof(FCProtocolEntry, running_pep_version) == 492);
static_assert(offsetof(FCProtocolEntry, port_id) == 608);
static_assert(offsetof(FCProtocolEntry, port_type) == 611);
static_assert(offsetof(FCProtocolEntry, port_state) == 612);
static_assert(offsetof(FCProtocolEntry, connection_mode) == 613);
static_assert(offsetof(FCProtocolEntry, port_speed) == 652);
static_assert(offsetof(FCProtocolEntry, link_flags) == 660);
static_assert(offsetof(FCProtocolEntry, supported_speeds) == 664);
static_assert(offsetof(FCProtocolEntry, principal_fabric_name) == 668);
static_assert(offsetof(FCProtocolEntry, adjacent_fabric_name) == 676);
static_assert(offsetof(FCProtocolEntry, congestion_notifications) == 684);
static_assert(offsetof(FCProtocolEntry, link_event_type) == 686);
static_assert(offsetof(FCProtocolEntry, link_event_threshold_ms) == 688);
static_assert(offsetof(FCProtocolEntry, delivery_reason) == 692);
static_assert(offsetof(FCProtocolEntry, congestion_event_type) == 694);
static_assert(offsetof(FCProtocolEntry, congestion_event_period_ms) == 696);
static_assert(offsetof(FCProtocolEntry, congestion_severity) == 700);
static_assert(offsetof(FCProtocolEntry, fabric_connection_flags) == 701);
static_assert(offsetof(FCProtocolEntry, congestion_state) == 702);
static_assert(offsetof(FCProtocolEntry, virtual_lane) == 703);
static_assert(offsetof(FCProtocolEntry, seconds_since_event) == 704);
static_assert(offsetof(FCProtocolEntry, link_integrity_events) == 708);
static_assert(offsetof(FCProtocolEntry, delivery_notification_events) == 709);
static_assert(offsetof(FCProtocolEntry, io_throttling) == 710);
static_assert(offsetof(FCProtocolEntry, driver_counters) == 752);
static_assert(offsetof(FCProtocolEntry, firmware_counters) == 776);
static_assert(offsetof(FCProtocolEntry, congestion_alarms) == 840);
static_assert(offsetof(FCProtocolEntry, congestion_warnings) == 848);
static_assert(offsetof(FCProtocolEntry, target_count) == 1992);
static_assert(offsetof(FCProtocolEntry, first_target) == 2000);
static_assert(offsetof(FCProtocolEntry, host_id) == 2160);
static_assert(offsetof(FCProtocolEntry, host_nqn) == 2176);
static_assert(offsetof(FCProtocolEntry, pci_bus) == 2672);
static_assert(offsetof(FCProtocolEntry, pci_device) == 2673);
static_assert(offsetof(FCProtocolEntry, pci_function) == 2674);
static_assert(offsetof(FCProtocolEntry, protocol_type) == 2676);
static_assert(offsetof(FCProtocolEntry, next) == 2680);
static_assert(sizeof(FCProtocolEntry) == 2688);

inline bool IsLinkUp(const FCProtocolEntry& fc) {
  return fc.port_state == PortState::kLinkUp;
}

inline bool IsVirtualPort(const FCProtocolEntry& fc) {
  return fc.interface_type == PortInterfaceType::kNpivVirtual;
}

inline bool IsInMaintenanceMode(const FCProtocolEntry& fc) {
  return (fc.driver_flags & kKnowsMaintenanceMode) != 0 && (fc.port_flags & kMaintenanceState) != 0;
}

// True when the port has one of these capabilities at least.
inline bool HasCapability(const FCProtocolEntry& fc, std::uint32_t capabilities) {
  return (fc.capabilities & capabilities) != 0;
}
