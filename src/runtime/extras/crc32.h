#pragma once

#include <cstddef>
#include <cstdint>

// Returns the remainder of a CRC-32 with the reflected polynomial 0xedb88320 over `size` bytes, from the
// start value `start`; nothing is inverted before or after. The CRC-32 of IEEE 802.3 is ~Crc32(data, size,
// 0xffffffff). A result is the start value for the bytes that follow.
std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t start);
