#include "framework/device_library/world_wide_name.h"

#include <cstdio>
#include <cstdlib>

namespace {

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

}  // namespace

bool TakeName(std::string_view& text, WorldWideName& name) {
  if (text.size() < WorldWideName::kTextLength) return false;
  for (std::size_t i = 0; i < std::size(name.octets); ++i) {
    const char* const octet = text.data() + 3 * i;
    const int high = DigitValue(octet[0]);
    const int low = DigitValue(octet[1]);
    if (high < 0 || low < 0 || (i + 1 < std::size(name.octets) && octet[2] != ':')) return false;
    name[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  text.remove_prefix(WorldWideName::kTextLength);
  return true;
}

const char* ReadName(const char* text, WorldWideName& name) {
  for (std::size_t i = 0; i < std::size(name.octets); ++i) {
    if (i > 0 && *text++ != ':') return nullptr;
    char* end = nullptr;
    name[i] = static_cast<std::uint8_t>(std::strtoul(text, &end, 16));
    if (end == text) return nullptr;
    text = end;
  }
  return text;
}

// Not by ReadName: scanf also takes "0x" without digits, as 0.
WorldWideName ReadLeadingOctets(const char* text) {
  WorldWideName name = {};
  // The octets that do not scan stay 0. NOLINTNEXTLINE(cert-err34-c)
  std::sscanf(text, "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &name[0], &name[1], &name[2], &name[3],
              &name[4], &name[5], &name[6], &name[7]);
  return name;
}
