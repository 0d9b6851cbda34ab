// Tables that name the codes of a field.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>

#include "framework/inline_text.h"

struct CodeText {
  std::uint32_t code;
  InlineText<61> text;
};

// The text of the first row with this code, `otherwise` when there is none.
constexpr const char* TextOfCode(std::span<const CodeText> table, std::uint32_t code,
                                 const char* otherwise = "Unknown") {
  for (const CodeText& row : table) {
    if (row.code == code) return row.text;
  }
  return otherwise;
}

// The code that an enumeration's value is in the record.
template <class Enum>
requires std::is_enum_v<Enum>
constexpr std::uint32_t CodeOf(Enum value) {
  return static_cast<std::uint32_t>(value);
}

constexpr const char* BoolText(bool value) {
  return value ? "true" : "false";
}
