// The operational parameters of a port, a second time.
#pragma once

#include <string>

namespace reference {

// The document of `hbaparams get` for a record of 512 bytes of this port.
std::string HbaParamsDocument(bool xml, const void* port_bytes, const void* record_bytes);

}  // namespace reference
