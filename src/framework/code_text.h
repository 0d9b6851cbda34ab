// Tables that name the codes of a field.
#pragma once

#include <cstdint>
#include <span>

struct CodeText {
  std::uint32_t code;
  const char* text;
};

// The text of the first row with this code, `otherwise` when there is none.
constexpr const char* TextOfCode(std::span<const CodeText> table, std::uint32_t code,
                                 const char* otherwise = "Unknown") {
  for (const CodeText& row : table) {
    if (row.code == code) return row.text;
  }
  return otherwise;
}

constexpr const char* BoolText(bool value) {
  return value ? "true" : "false";
}
