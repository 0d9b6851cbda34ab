// The rows of the memory maps and of the code tables behind them.
#pragma once

#include <cstdint>
#include <span>

// How a field is shown. Any other number shows "Incorrect Data Type".
enum SfpFieldType : std::uint16_t {
  FIELD_BIT_LIST = 92,   // the texts of the set bits
  FIELD_HEADING = 93,    // the name alone
  FIELD_SKIP = 94,       // nothing
  FIELD_BIT_FLAGS = 95,  // every bit of the table with 1 or 0
  FIELD_BYTE_CODE = 96,  // the text of the byte's value
  FIELD_HEX4 = 97,       // a number of four bytes
  FIELD_HEX2 = 98,       // a number of two bytes
  FIELD_HEX_DUMP = 99,   // byte by byte
  FIELD_ASCII = 100,
};

struct SfpCode {
  std::uint16_t value;  // a byte's value, or a bit in it
  const char* text;
};

struct SfpField {
  std::uint16_t offset;  // in the image; kNoOffset for a heading
  std::uint16_t size;    // in bytes
  SfpFieldType type;
  const char* name;  // label; may be empty
  std::span<const SfpCode> table = {};
};

inline constexpr std::uint16_t kNoOffset = 0xFFFE;

extern const std::span<const SfpField> SfpFieldTable;
extern const std::span<const SfpField> QsfpFieldTable;
