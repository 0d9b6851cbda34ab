// The Vital Product Data of an adapter (PCI Local Bus Specification 3.0, appendix I).
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// The image: identifier string, read-only items with their checksum, read-write items.
std::string ComposeVpd(const Adapter& adapter, const VpdSetup& setup);

}  // namespace lab
