// The answer of the switch to a Read Diagnostic Parameters ELS (FC-LS): what it knows of the link to a port.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// The descriptors after their list's length, in wire order.
std::string ComposeRdpResponse(const Entry& entry);

}  // namespace lab
