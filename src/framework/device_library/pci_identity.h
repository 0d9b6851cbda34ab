// PCI identity of the function that drives a port.
#pragma once

#include <cstddef>
#include <cstdint>

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
