// What the port reports' calls hand over: images and responses, byte by byte.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// The Vital Product Data: the identifier string, the read-only items with their checksum, the read-write
// items.
std::string ComposeVpd(const Adapter& adapter, const VpdSetup& setup);

// The answer of the switch to a Read Diagnostic Parameters ELS (FC-LS): what it knows of the link to this
// port.
std::string ComposeRdpResponse(const Entry& entry);

// A firmware dump: a text that says what it is of, and bytes that look like memory.
std::string ComposeFirmwareDump(const Adapter& adapter, const Entry& entry);

}  // namespace lab
