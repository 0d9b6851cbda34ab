// What the decoders of a Read Diagnostic Parameters response are given: a descriptor of big-endian words.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "framework/command_run.h"

// The big-endian words of some bytes. Half a word is none, and what lies outside reads as 0.
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

  // The `count` words from `first` on, without those that lie outside.
  RdpWords Part(std::size_t first, std::size_t count) const {
    const std::size_t begin = std::min(first, Count());
    return RdpWords(bytes_.subspan(begin * kWordBytes, std::min(count, Count() - begin) * kWordBytes));
  }

  // The bytes in wire order.
  std::span<const std::uint8_t> Bytes() const { return bytes_; }

 private:
  std::span<const std::uint8_t> bytes_;
};

// One descriptor of the list.
struct RdpDescriptor {
  std::uint32_t tag;
  std::uint32_t length;  // in bytes, as the response says
  RdpWords words;        // at most as many as the length says; fewer when the response ends before
};

// Makes a decoder the function at work for its scope, and logs which descriptor it decodes.
class DecoderScope {
 public:
  DecoderScope(CommandRun& run, const char* function, const RdpDescriptor& descriptor)
      : function_(run, function) {
    run.Trace("Tag 0x%08X Length %u", descriptor.tag, descriptor.length);
  }

 private:
  const FunctionScope function_;
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
