#include "port/sfp/sfp_code.h"

std::string_view TextOfValue(std::span<const SfpCode> table, std::uint8_t value) {
  for (const SfpCode& row : table) {
    if (row.value == value) return row.text;
  }
  return {};
}

void JoinedTexts::Add(std::string_view text) {
  if (text.find_first_not_of(' ') == std::string_view::npos) return;
  if (!text_.empty()) text_ += separator_;
  text_ += text;
}

void JoinedTexts::AddBits(std::span<const SfpCode> table, std::uint16_t bits) {
  for (const SfpCode& row : table) {
    if ((bits & row.value) != 0) Add(row.text);
  }
}
