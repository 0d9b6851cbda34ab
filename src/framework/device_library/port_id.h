// Fibre Channel address identifiers.
#pragma once

#include <cstdint>
#include <string>

#include "framework/device_library/octet_text.h"

// The address of a port in the fabric (FC-FS): domain, area and port, in wire order.
struct PortId {
  std::uint8_t octets[3];

  friend constexpr bool operator==(const PortId&, const PortId&) = default;

  std::string Text() const { return OctetText(octets); }  // "01:0b:ff", lower-case
};
static_assert(sizeof(PortId) == 3);
