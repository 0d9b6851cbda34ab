// Records of the device library that describe the host: adapters, their ports and the protocols on a port.
//
// The library owns every record, fills it and keeps it valid while it is up. The program only reads, through
// pointers to const. All numbers are little-endian; texts end at their terminator or at the end of their
// field, whichever comes first (see FixedText).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the records are read in place");

// A text in a field of N bytes. Only View may look at the bytes: the field need not hold a terminator.
template <std::size_t N>
struct FixedText {
  char bytes[N];

  // The text up to its terminator or the end of the field.
  std::string_view View() const { return {bytes, strnlen(bytes, N)}; }
  bool Empty() const { return bytes[0] == '\0'; }
};

// An eight-byte World Wide Name in wire order.
using WorldWideName = std::uint8_t[8];

// Names a port to the library: most calls take its address. Its content is the library's own, except for the
// number that the two calls of the older interface take in place of the address.
struct DeviceHandle {
  std::uint32_t reserved_0;
  std::uint32_t sd_handle;
  std::uint32_t reserved_8;
};
static_assert(offsetof(DeviceHandle, sd_handle) == 4);
static_assert(sizeof(DeviceHandle) == 12);

// PCI identity of the function behind a port; all that the family tests look at.
struct PciIdentity {
  std::uint16_t vendor_id;
  std::uint16_t device_id;
  std::uint16_t subsystem_vendor_id;
  std::uint16_t subsystem_device_id;
  std::byte reserved_8[42];
  std::uint16_t link_capability;  // PCI Express Link Capabilities: bits 0-3 speed, bits 4-9 width
  std::uint16_t link_status;      // PCI Express Link Status, same layout
  std::byte reserved_54[26];
};
static_assert(offsetof(PciIdentity, vendor_id) == 0);
static_assert(offsetof(PciIdentity, device_id) == 2);
static_assert(offsetof(PciIdentity, subsystem_vendor_id) == 4);
static_assert(offsetof(PciIdentity, subsystem_device_id) == 6);
static_assert(offsetof(PciIdentity, link_capability) == 78 - 28);
static_assert(offsetof(PciIdentity, link_status) == 80 - 28);
static_assert(sizeof(PciIdentity) == 80);

enum class PortInterfaceType : std::uint16_t { kPhysical = 1, kNpivVirtual = 3 };

enum class ProtocolType : std::uint32_t { kFc = 0, kFcoe = 1 };  // 2 and above: protocols not served here

struct TargetEntry;

// One protocol on one port, real or virtual: nearly everything that the port commands show or act on.
struct FCProtocolEntry {
  WorldWideName node_name;
  WorldWideName port_name;
  DeviceHandle handle;
  PciIdentity pci;
  FixedText<52> driver_version;
  std::uint32_t
      capabilities;  // bits 23 and 26: congestion statistics generation; 29: second link test interface
  std::byte reserved_164[16];
  std::uint8_t
      driver_flags;  // bit 0: current remote-port records; bit 1: SFP firmware update; bit 2: see below
  std::byte reserved_181[3];
  std::uint8_t port_flags;  // bit 0, together with driver flag 2: the port is in maintenance mode
  std::byte reserved_185[211];
  FixedText<32> running_firmware_version;
  FixedText<32> flash_bios_version;
  std::byte reserved_460[2];
  PortInterfaceType interface_type;
  std::byte reserved_464[8];
  std::uint32_t rom_flags;                 // bit 3: BIOS image present; bit 1: UEFI image present
  std::uint8_t flash_firmware_version[4];  // major, minor, sub, unused
  std::uint8_t flash_efi_version[4];       // major, minor, unused
  std::uint8_t flash_fcode_version[4];     // major, minor, unused
  std::uint8_t running_mpi_version[4];     // major, minor, sub, unused
  std::uint8_t running_pep_version[4];     // major, minor, sub, unused
  std::byte reserved_496[112];
  std::uint8_t port_id[3];
  std::uint8_t port_type;
  std::uint8_t port_state;  // 1: link up; 3: offline
  std::uint8_t connection_mode;
  std::byte reserved_614[38];
  std::uint32_t port_speed;
  std::byte reserved_656[4];
  std::uint16_t link_flags;  // bit 15: forward error correction in use on a 16 Gbps link
  std::byte reserved_662[2];
  std::uint8_t supported_speeds;
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

struct ProtocolList {
  std::byte reserved_0[8];
  const FCProtocolEntry* first;
};
static_assert(offsetof(ProtocolList, first) == 8);

struct PhyPortEntry {
  std::uint32_t number;  // within the adapter, from 0
  std::byte reserved_4[4];
  const ProtocolList* protocols;
  const PhyPortEntry* next;
};
static_assert(offsetof(PhyPortEntry, number) == 0);
static_assert(offsetof(PhyPortEntry, protocols) == 8);
static_assert(offsetof(PhyPortEntry, next) == 16);

struct PortList {
  std::byte reserved_0[8];
  const PhyPortEntry* first;
};
static_assert(offsetof(PortList, first) == 8);

struct AdapterEntry {
  FixedText<32> serial_number;
  std::uint32_t type;
  FixedText<80> manufacturer;
  std::uint16_t vendor_id;
  std::uint16_t subsystem_vendor_id;
  std::uint16_t subsystem_device_id;
  std::uint16_t bus_id;
  std::byte reserved_124[32];
  FixedText<32> model;
  FixedText<32> flash_bios_version;
  FixedText<32> flash_fcode_version;
  FixedText<32> flash_efi_version;
  FixedText<32> flash_firmware_version;
  FixedText<32> multiboot_version;
  std::uint32_t chip_revision;
  std::byte reserved_352[32];
  const PortList* ports;
  const AdapterEntry* next;
};
static_assert(offsetof(AdapterEntry, serial_number) == 0);
static_assert(offsetof(AdapterEntry, type) == 32);
static_assert(offsetof(AdapterEntry, manufacturer) == 36);
static_assert(offsetof(AdapterEntry, vendor_id) == 116);
static_assert(offsetof(AdapterEntry, subsystem_vendor_id) == 118);
static_assert(offsetof(AdapterEntry, subsystem_device_id) == 120);
static_assert(offsetof(AdapterEntry, bus_id) == 122);
static_assert(offsetof(AdapterEntry, model) == 156);
static_assert(offsetof(AdapterEntry, flash_bios_version) == 188);
static_assert(offsetof(AdapterEntry, flash_fcode_version) == 220);
static_assert(offsetof(AdapterEntry, flash_efi_version) == 252);
static_assert(offsetof(AdapterEntry, flash_firmware_version) == 284);
static_assert(offsetof(AdapterEntry, multiboot_version) == 316);
static_assert(offsetof(AdapterEntry, chip_revision) == 348);
static_assert(offsetof(AdapterEntry, ports) == 384);
static_assert(offsetof(AdapterEntry, next) == 392);

struct AdapterList {
  std::uint32_t count;  // for the log only: the chain decides
  std::byte reserved_4[4];
  const AdapterEntry* first;
};
static_assert(offsetof(AdapterList, count) == 0);
static_assert(offsetof(AdapterList, first) == 8);
