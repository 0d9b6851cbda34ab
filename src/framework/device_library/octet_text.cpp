#include "framework/device_library/octet_text.h"

void AppendOctets(std::string& text, std::span<const std::uint8_t> octets, std::string_view separator) {
  constexpr char kDigits[] = "0123456789abcdef";
  bool first = true;
  for (const std::uint8_t octet : octets) {
    if (!first) text += separator;
    first = false;
    text += kDigits[octet >> 4];
    text += kDigits[octet & 0x0fu];
  }
}

std::string OctetText(std::span<const std::uint8_t> octets, std::string_view separator) {
  std::string text;
  text.reserve(octets.size() * (2 + separator.size()));
  AppendOctets(text, octets, separator);
  return text;
}
