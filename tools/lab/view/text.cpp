#include "tools/lab/view/text.h"

#include <array>
#include <cstdio>

namespace view {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr char32_t kNoCharacter = 0xffffffff;

struct Range {
  char32_t first, last;
};

// What no text may hold: controls, those that turn the direction of writing, line and paragraph separators,
// surrogates, and what XML 1.0 does not allow.
constexpr Range kRefused[] = {
    {0x00, 0x1f},     {0x7f, 0x9f},     {0x061c, 0x061c}, {0x200b, 0x200f}, {0x2028, 0x202e},
    {0x2060, 0x2069}, {0xd800, 0xdfff}, {0xfeff, 0xfeff}, {0xfff0, 0xfffc}, {0xfffe, 0xffff},
};

bool IsRefused(char32_t character) {
  if (character > 0x10ffff || (character & 0xfffe) == 0xfffe) return true;
  for (const Range& range : kRefused) {
    if (character >= range.first && character <= range.last) return true;
  }
  return false;
}

struct Decoded {
  char32_t character;
  std::size_t size;
};

// The character that the text begins with. A byte that begins none is kNoCharacter, of size 1.
Decoded FirstCharacter(std::string_view text) {
  constexpr Decoded kBroken = {kNoCharacter, 1};
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < size) return kBroken;
  char32_t character = lead & (0x7fu >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return kBroken;
    character = character << 6 | (byte(i) & 0x3fu);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[size]) return kBroken;
  return {character, size};
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Formatted(const char* format, auto... values) {
  std::array<char, 64> buffer{};
  // The formats are those of this file. NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
  std::snprintf(buffer.data(), buffer.size(), format, values...);
  return buffer.data();
}

}  // namespace

std::string CleanText(std::string_view text) {
  text = Trimmed(text);
  std::string clean;
  while (!text.empty()) {
    const Decoded next = FirstCharacter(text);
    clean += IsRefused(next.character) ? kReplacement : text.substr(0, next.size);
    text.remove_prefix(next.size);
  }
  return clean;
}

std::string XmlText(std::string_view clean) {
  std::string xml;
  for (const char character : clean) {
    switch (character) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      case '\'':
        xml += "&#39;";
        break;
      default:
        xml += character;
    }
  }
  return xml;
}

std::string JsonText(std::string_view clean) {
  std::string json = "\"";
  for (const char character : clean) {
    if (character == '"' || character == '\\') json += '\\';
    json += character;
  }
  return json + '"';
}

std::size_t CharacterCount(std::string_view clean) {
  std::size_t count = 0;
  for (const char character : clean) {
    if ((static_cast<unsigned char>(character) & 0xc0) != 0x80) ++count;
  }
  return count;
}

std::string Grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, ",");
  }
  return digits;
}

std::string Counted(std::uint64_t count, std::string_view noun) {
  return Grouped(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string HexNumber(std::uint64_t number, int digits) {
  return Formatted("0x%0*llx", digits, static_cast<unsigned long long>(number));
}

std::string Decimal(double value, int decimals) {
  const std::string text = Formatted("%.*f", decimals, value);
  // What rounds to zero has no sign.
  return text.find_first_not_of("-0.") == std::string::npos && text[0] == '-' ? text.substr(1) : text;
}

std::string Joined(std::span<const std::string> parts, std::string_view separator) {
  std::string joined;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!joined.empty()) joined += separator;
    joined += part;
  }
  return joined;
}

}  // namespace view
