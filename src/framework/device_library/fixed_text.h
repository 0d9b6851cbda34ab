// Texts of the device library's records.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

// A text in a field of N bytes, which need not hold a terminator: read it through View alone.
template <std::size_t N>
struct FixedText {
  char bytes[N];

  // The text up to its terminator or the end of the field, whichever comes first.
  std::string_view View() const { return {bytes, strnlen(bytes, N)}; }
  bool Empty() const { return bytes[0] == '\0'; }
};
