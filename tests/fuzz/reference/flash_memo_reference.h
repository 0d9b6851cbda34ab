// The flash memo block of an adapter, a second time.
#pragma once

#include <cstdint>
#include <string>

namespace reference {

// The document of `adapter flashinfo get` for a block of 48 bytes of the adapter with this port.
std::string FlashMemoDocument(bool xml, const void* port, const std::uint8_t* bytes);

}  // namespace reference
