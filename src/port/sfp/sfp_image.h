// The memory image of a pluggable module, read within its bounds.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

inline constexpr std::size_t kSfpAddressBytes = 256;
inline constexpr std::size_t kSfpImageBytes = 2 * kSfpAddressBytes;

// Bytes of an image, by offset and count.
struct SfpRange {
  std::uint16_t offset;
  std::uint16_t size;
};

// A big-endian number in an image, as wide as its type.
template <std::unsigned_integral Number>
struct SfpNumber {
  std::uint16_t offset;
};

// 256 bytes of the A0 address, then 256 bytes of the A2 address, or as many of them as are valid. A field
// that reaches past the end has no bytes and reads as 0.
class SfpImage : std::span<const std::uint8_t> {
 public:
  using span::span;
  constexpr SfpImage(std::span<const std::uint8_t> bytes) : span(bytes) {}  // NOLINT: an image is its bytes

  using span::begin, span::end, span::size;
  using span::first, span::last;

  // All bytes of the range; none when one of them is outside the image.
  constexpr std::span<const std::uint8_t> Bytes(SfpRange range) const {
    if (range.offset > size() || range.size > size() - range.offset) return {};
    return subspan(range.offset, range.size);
  }

  template <std::unsigned_integral Number>
  constexpr Number Read(SfpNumber<Number> place) const {
    static_assert(sizeof(Number) <= sizeof(std::uint32_t));
    std::uint32_t number = 0;
    for (const std::uint8_t byte : Bytes({place.offset, sizeof(Number)})) number = number << 8 | byte;
    return static_cast<Number>(number);
  }
};

// True for QSFP, QSFP+, QSFP28 and CXP2, which follow SFF-8636; all other modules follow SFF-8472. The first
// byte decides.
bool IsQsfp(SfpImage image);
