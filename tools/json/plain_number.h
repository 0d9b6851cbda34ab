// Values that are plainly a number: "41", "-5.00", "3.300000000 V", "36 (C)".
#pragma once

#include <string_view>

namespace zfc_json {

// The parts of a value as they are in it; both are empty for a value that is no number.
struct PlainNumber {
  std::string_view number;  // also a JSON number
  std::string_view unit;    // a unit of the reports, without its parentheses; empty for none
};

// Whether `text` is a whole number that a JSON reader can keep in 64 bits: digits without a leading zero, a
// minus ahead of them if need be.
bool IsWholeNumber(std::string_view text);

// A whole number or one with a decimal point, and at most one unit after one blank. Hexadecimal digits,
// versions, leading zeros, lists of numbers, infinities and unknown units make no number. A label can end in
// a unit, too: "Temperature In Celsius".
PlainNumber PlainNumberOf(std::string_view label, std::string_view value);

}  // namespace zfc_json
