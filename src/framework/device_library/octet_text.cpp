#include "framework/device_library/octet_text.h"

void AppendOctets(std::string& text, std::span<const std::uint8_t> octets, std::string_view separator) {
  constexpr char kDigits[] = "0123456789abcdef";
  if (octets.empty()) return;
  const std::size_t begin = text.size();
  text.resize(begin + octets.size() * (2 + separator.size()) - separator.size());
  char* to = text.data() + begin;
  for (const std::uint8_t octet : octets) {
    if (to != text.data() + begin) {
      for (const char character : separator) *to++ = character;
    }
    *to++ = kDigits[octet >> 4];
    *to++ = kDigits[octet & 0x0fu];
  }
}

std::string OctetText(std::span<const std::uint8_t> octets, std::string_view separator) {
  std::string text;
  AppendOctets(text, octets, separator);
  return text;
}
