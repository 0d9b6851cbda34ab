#include "config/port_names.h"

#include <algorithm>
#include <cstdlib>

const char* ReadName(const char* text, WorldWideName& name) {
  for (std::size_t i = 0; i < sizeof name; ++i) {
    if (i > 0 && *text++ != ':') return nullptr;
    char* end = nullptr;
    name[i] = static_cast<std::uint8_t>(std::strtoul(text, &end, 16));
    if (end == text) return nullptr;
    text = end;
  }
  return text;
}

bool IsZero(const WorldWideName& name) {
  return std::all_of(std::begin(name), std::end(name), [](std::uint8_t octet) { return octet == 0; });
}
