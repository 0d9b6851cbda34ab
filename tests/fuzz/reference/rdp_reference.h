// The report of a Read Diagnostic Parameters response (FC-LS), a second time.
#pragma once

#include <cstdint>
#include <string>

namespace reference {

// The document of `rdp get` for a response of 508 bytes.
std::string RdpDocument(bool xml, const std::uint8_t* response);

}  // namespace reference
