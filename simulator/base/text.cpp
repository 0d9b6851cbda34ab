#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <span>

#include "framework/device_library/harmless_text.h"

namespace lab {
namespace {

bool ReadDecimal(std::string_view text, unsigned limit, unsigned& out) {
  const char* end = text.data() + text.size();
  if (text.empty() || text[0] < '0' || text[0] > '9') return false;
  const auto [stop, error] = std::from_chars(text.data(), end, out);
  return error == std::errc{} && stop == end && out <= limit;
}

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads the number of `digits` digits at `at`; false unless it lies between `low` and `high`.
bool ReadField(std::string_view text, std::size_t at, std::size_t digits, unsigned low, unsigned high,
               unsigned& out) {
  return ReadDecimal(text.substr(at, digits), high, out) && out >= low;
}

// Reads numbers of at most 255 joined by dots. Returns how many there are, or 0 for any other text.
std::size_t ReadDotted(std::string_view text, std::span<std::uint8_t> out) {
  for (std::size_t count = 0; count < out.size(); ++count) {
    const std::size_t dot = text.find('.');
    unsigned part = 0;
    if (!ReadDecimal(text.substr(0, dot), 255, part)) return 0;
    out[count] = static_cast<std::uint8_t>(part);
    if (dot == text.npos) return count + 1;
    text.remove_prefix(dot + 1);
  }
  return 0;
}

unsigned DaysOf(unsigned year, unsigned month) {
  constexpr unsigned char kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

bool ReadDay(std::string_view text, unsigned& year, unsigned& month, unsigned& day) {
  return text.size() == 10 && text[4] == '-' && text[7] == '-' && ReadField(text, 0, 4, 0, 9999, year) &&
         ReadField(text, 5, 2, 1, 12, month) && ReadField(text, 8, 2, 1, DaysOf(year, month), day);
}

}  // namespace

bool ReadNumber(std::string_view text, std::uint64_t limit, std::uint64_t& out) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  }
  const char* end = text.data() + text.size();
  if (text.empty() || DigitValue(text[0]) < 0) return false;
  const auto [stop, error] = std::from_chars(text.data(), end, out, base);
  return error == std::errc{} && stop == end && out <= limit;
}

bool ReadDecimalNumber(std::string_view text, double& out) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, out, std::chars_format::fixed);
  return error == std::errc{} && stop == end && text.find_first_not_of("-.0123456789") == text.npos;
}

bool ReadVersion(std::string_view text, ComponentVersion& out) {
  std::uint8_t parts[3] = {};
  const std::size_t count = ReadDotted(text, parts);
  out = count >= 2 ? ComponentVersion{parts[0], parts[1], parts[2]} : ComponentVersion{};
  return count >= 2;
}

bool ReadToolVersion(std::string_view text, std::uint8_t (&out)[4]) {
  std::uint8_t parts[4] = {};
  if (ReadDotted(text, parts) != 4) return false;
  std::memcpy(out, parts, sizeof out);
  return true;
}

bool ReadOctets(std::string_view text, std::span<std::uint8_t> out) {
  const std::size_t count = out.size();
  if (text.size() != count * 3 - 1) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const int high = DigitValue(text[3 * i]);
    const int low = DigitValue(text[3 * i + 1]);
    if (high < 0 || low < 0 || (i + 1 < count && text[3 * i + 2] != ':')) return false;
    out[i] = static_cast<std::uint8_t>(high * 16 + low);
  }
  return true;
}

bool ReadDate(std::string_view text, char (&out)[8]) {
  unsigned year = 0, month = 0, day = 0;
  if (!ReadDay(text, year, month, day)) return false;
  char digits[32];
  std::snprintf(digits, sizeof digits, "%04u%02u%02u", year, month, day);
  std::memcpy(out, digits, sizeof out);
  return true;
}

bool ReadTime(std::string_view text, FlashMemoBlock& out) {
  unsigned year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (text.size() != 19 || !ReadDay(text.substr(0, 10), year, month, day)) return false;
  if (text[10] != ' ' || text[13] != ':' || text[16] != ':') return false;
  if (!ReadField(text, 11, 2, 0, 23, hour) || !ReadField(text, 14, 2, 0, 59, minute) ||
      !ReadField(text, 17, 2, 0, 59, second)) {
    return false;
  }
  out.update_year = static_cast<std::uint16_t>(year);
  out.update_month = static_cast<std::uint8_t>(month);
  out.update_day = static_cast<std::uint8_t>(day);
  out.update_hour = static_cast<std::uint8_t>(hour);
  out.update_minute = static_cast<std::uint8_t>(minute);
  out.update_second = static_cast<std::uint8_t>(second);
  return true;
}

std::string VersionText(ComponentVersion version) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u.%02u", version.major, version.minor, version.sub);
  return text;
}

std::string TimeText(const FlashMemoBlock& memo) {
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", memo.update_year, memo.update_month,
                memo.update_day, memo.update_hour, memo.update_minute, memo.update_second);
  return text;
}

std::string OctetText(std::span<const std::uint8_t> octets) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t octet : octets) {
    if (!text.empty()) text += ':';
    text += kDigits[octet >> 4];
    text += kDigits[octet & 15];
  }
  return text;
}

std::string Quoted(std::string_view text) {
  return '"' + Escaped(text) + '"';
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      escaped += '\\';
      escaped += c;
    } else if (c == '\n') {
      escaped += "\\n";
    } else if (c == '\r') {
      escaped += "\\r";
    } else if (c == '\t') {
      escaped += "\\t";
    } else if (byte < 0x20 || byte > 0x7e) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", byte);
      escaped += escape;
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string ShownText(std::string_view text) {
  constexpr std::size_t kLongest = 64;
  std::string shown;
  for (std::size_t characters = 0; !text.empty(); ++characters) {
    if (characters == kLongest) return shown + "...";
    const std::size_t length = HarmlessLength(text);
    shown += length > 0 ? std::string(text.substr(0, length)) : Escaped(text.substr(0, 1));
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace lab
