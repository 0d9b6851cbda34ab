// Records of the device library that describe the host: adapters, their ports and the protocols on a port.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/fixed_text.h"

struct FCProtocolEntry;

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
  std::uint32_t count;  // for the log only: the chain has its own end
  std::byte reserved_4[4];
  const AdapterEntry* first;
};
static_assert(offsetof(AdapterList, count) == 0);
static_assert(offsetof(AdapterList, first) == 8);
