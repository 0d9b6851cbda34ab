// Code tables: the words for the values and the bits of a byte.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "framework/inline_text.h"

struct SfpCode {
  std::uint16_t value;  // a byte's value, or bits in it
  InlineText<93> text;
};

// The text of the first row with this value; empty when there is none.
std::string_view TextOfValue(std::span<const SfpCode> table, std::uint8_t value);

// Texts with a separator between them.
class JoinedTexts {
 public:
  explicit JoinedTexts(std::string_view separator) : separator_(separator) {}

  // Adds a text; one of blanks only adds nothing.
  void Add(std::string_view text);
  // Adds, in the order of the table, the texts of the rows with a bit in `bits`.
  void AddBits(std::span<const SfpCode> table, std::uint16_t bits);

  const std::string& Text() const { return text_; }

 private:
  std::string_view separator_;
  std::string text_;
};
