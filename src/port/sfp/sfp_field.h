// The rows of the memory maps, and where the fields they name are.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>

#include "port/sfp/sfp_code.h"
#include "port/sfp/sfp_image.h"

// How a field is shown. Any other number shows "Incorrect Data Type".
enum SfpFieldType : std::uint16_t {
  FIELD_BIT_LIST = 92,   // the texts of the set bits
  FIELD_HEADING = 93,    // the name alone
  FIELD_SKIP = 94,       // nothing
  FIELD_BIT_FLAGS = 95,  // every bit of the code table with 1 or 0
  FIELD_BYTE_CODE = 96,  // the text of the byte's value
  FIELD_HEX4 = 97,       // a number of four bytes
  FIELD_HEX2 = 98,       // a number of two bytes
  FIELD_HEX_DUMP = 99,   // byte by byte
  FIELD_ASCII = 100,
};

struct SfpField {
  std::uint16_t offset;  // in the image; kNoOffset for a heading
  std::uint16_t size;    // in bytes
  SfpFieldType type;
  const char* name;  // label; may be empty
  std::span<const SfpCode> table = {};
};

inline constexpr std::uint16_t kNoOffset = 0xFFFE;

constexpr SfpRange RangeOf(const SfpField& field) {
  return {field.offset, field.size};
}

// Declared only: a constant expression that looks for a wrong name or width does not compile, because it
// can't call this.
void NoSuchField();

// Where the table's first field is whose name is `name` followed by `suffix`. For constants.
constexpr SfpRange RangeNamed(std::span<const SfpField> table, std::string_view name,
                              std::string_view suffix = {}) {
  for (const SfpField& field : table) {
    const std::string_view whole = field.name;
    if (whole.size() == name.size() + suffix.size() && whole.starts_with(name) && whole.ends_with(suffix))
      return RangeOf(field);
  }
  NoSuchField();
  return {};
}

// The same for a field that is one number of this width.
template <std::unsigned_integral Number>
consteval SfpNumber<Number> NumberNamed(std::span<const SfpField> table, std::string_view name,
                                        std::string_view suffix = {}) {
  const SfpRange range = RangeNamed(table, name, suffix);
  if (range.size != sizeof(Number)) NoSuchField();
  return {range.offset};
}
