// The memory image of a pluggable module, and which of the two memory maps it follows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// 256 bytes of the A0 address, then 256 bytes of the A2 address, or as many of them as are valid. What lies
// behind the end does not exist: nothing of it is shown, and it reads as 0 or as an empty text.
using SfpImage = std::span<const std::uint8_t>;

inline constexpr std::size_t kSfpAddressBytes = 256;
inline constexpr std::size_t kSfpImageBytes = 2 * kSfpAddressBytes;

// True for QSFP, QSFP+, QSFP28 and CXP2 (the identifiers 0x0c, 0x0d, 0x11 and 0x12 of SFF-8024), which follow
// SFF-8636; all others follow SFF-8472.
bool IsQsfp(SfpImage image);

// Where the identification begins that both maps share from there on: 128 for a QSFP image, else 0.
std::size_t PageBase(SfpImage image);

// The `size` bytes at `offset`; an empty span when they are not all within the image.
SfpImage BytesAt(SfpImage image, std::size_t offset, std::size_t size);

// The byte at `offset`, 0 when the image ends ahead of it.
std::uint8_t ByteAt(SfpImage image, std::size_t offset);
