// Texts of unknown origin in messages: nothing in them may command the terminal that shows the message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace harmless_text_detail {

// A row of RFC 3629's table: the lead bytes from `first` on, the bits of the lead that count (0 for bytes
// that lead nothing), how many bytes follow, and the least code point that needs so many.
struct Utf8Lead {
  std::uint8_t first;
  std::uint8_t bits;
  std::uint8_t following;
  std::uint32_t least;
};
inline constexpr Utf8Lead kUtf8Leads[] = {{0xf8, 0, 0, 0},        {0xf0, 0x07, 3, 0x10000},
                                          {0xe0, 0x0f, 2, 0x800}, {0xc0, 0x1f, 1, 0x80},
                                          {0x80, 0, 0, 0},        {0, 0x7f, 0, 0}};

struct CodeRange {
  std::uint32_t first;
  std::uint32_t last;
};
// Control codes (C0, DEL, C1), and the marks that turn the direction of a text or end its line.
inline constexpr CodeRange kHarmful[] = {{0, 0x1f},        {0x7f, 0x9f},          {0x61c, 0x61c},
                                         {0x200e, 0x200f}, {0x2028, 0x202e},      {0x2066, 0x2069},
                                         {0xd800, 0xdfff}, {0x110000, 0xffffffff}};

}  // namespace harmless_text_detail

// Returns how many bytes the character at the front of `text` has, in UTF-8; 0 when it is a control code, a
// mark that turns the direction of a text, or no UTF-8, and for an empty text.
inline std::size_t HarmlessLength(std::string_view text) {
  using harmless_text_detail::kHarmful, harmless_text_detail::kUtf8Leads;
  if (text.empty()) return 0;
  const auto lead = static_cast<std::uint8_t>(text.front());
  const auto* row = kUtf8Leads;
  while (lead < row->first) ++row;
  if (row->bits == 0 || text.size() <= row->following) return 0;
  std::uint32_t code = lead & row->bits;
  for (std::size_t at = 1; at <= row->following; ++at) {
    const auto byte = static_cast<std::uint8_t>(text[at]);
    if ((byte & 0xc0) != 0x80) return 0;
    code = code << 6 | (byte & 0x3f);
  }
  if (code < row->least) return 0;
  for (const auto& range : kHarmful) {
    if (code >= range.first && code <= range.last) return 0;
  }
  return row->following + std::size_t{1};
}

// What a message of one line, or of several, keeps of line ends.
enum class LineEnds : std::uint8_t { kEscaped, kKept };

// Returns the text with every byte that HarmlessLength() refuses as \xNN.
inline std::string Harmless(std::string_view text, LineEnds line_ends = LineEnds::kEscaped) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string harmless;
  while (!text.empty()) {
    const bool keeps = text.front() == '\n' && line_ends == LineEnds::kKept;
    const std::size_t length = keeps ? 1 : HarmlessLength(text);
    if (length > 0) {
      harmless += text.substr(0, length);
    } else {
      const auto byte = static_cast<std::uint8_t>(text.front());
      harmless += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    text.remove_prefix(length > 0 ? length : 1);
  }
  return harmless;
}
