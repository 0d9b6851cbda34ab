// How the decoders of a Read Diagnostic Parameters response see its bytes: as big-endian words.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

// Whole words only; what lies outside reads as 0.
class RdpWords {
 public:
  static constexpr std::size_t kWordBytes = 4;

  explicit RdpWords(std::span<const std::uint8_t> bytes)
      : bytes_(bytes.first(bytes.size() & ~(kWordBytes - 1))) {}

  std::size_t Count() const { return bytes_.size() / kWordBytes; }

  std::uint32_t operator[](std::size_t index) const {
    if (index >= Count()) return 0;
    const std::uint8_t* const byte = &bytes_[index * kWordBytes];
    return std::uint32_t{byte[0]} << 24 | std::uint32_t{byte[1]} << 16 | std::uint32_t{byte[2]} << 8 |
           byte[3];
  }

  // Those of the `count` words from `first` on that are there.
  RdpWords Part(std::size_t first, std::size_t count) const {
    const std::size_t begin = std::min(first, Count());
    return RdpWords(bytes_.subspan(begin * kWordBytes, std::min(count, Count() - begin) * kWordBytes));
  }

  // The bytes in wire order.
  std::span<const std::uint8_t> Bytes() const { return bytes_; }

 private:
  std::span<const std::uint8_t> bytes_;
};

// One descriptor of the list. Fewer words can be there than its length in bytes says, and never more.
struct RdpDescriptor {
  std::uint32_t tag;
  std::uint32_t length;
  RdpWords words;
};

constexpr std::uint16_t High(std::uint32_t word) {
  return static_cast<std::uint16_t>(word >> 16);
}

constexpr std::uint16_t Low(std::uint32_t word) {
  return static_cast<std::uint16_t>(word);
}

// Counts are shown signed.
constexpr std::int32_t Signed(std::uint32_t word) {
  return static_cast<std::int32_t>(word);
}
