#include "tools/json/json_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zfc_json {
namespace {

constexpr std::uint8_t kFirstBeyondAscii = 0x80;

std::uint8_t ByteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

// The length of the ASCII at the front of the text.
std::size_t AsciiLength(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  for (std::uint64_t word = 0; at + sizeof word <= text.size(); at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (at < text.size() && ByteAt(text, at) < kFirstBeyondAscii) ++at;
  return at;
}

// A row of RFC 3629's table of well-formed sequences: the lead bytes, the range of the second byte, and how
// many bytes follow the lead. Bytes after the second are from 0x80 to 0xBF.
struct Utf8Row {
  std::uint8_t first_lead;
  std::uint8_t last_lead;
  std::uint8_t least_second;
  std::uint8_t most_second;
  std::uint8_t following;
};

constexpr Utf8Row kUtf8Rows[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 1}, {0xE0, 0xE0, 0xA0, 0xBF, 2}, {0xE1, 0xEC, 0x80, 0xBF, 2},
    {0xED, 0xED, 0x80, 0x9F, 2}, {0xEE, 0xEF, 0x80, 0xBF, 2}, {0xF0, 0xF0, 0x90, 0xBF, 3},
    {0xF1, 0xF3, 0x80, 0xBF, 3}, {0xF4, 0xF4, 0x80, 0x8F, 3},
};

// The length of the sequence at the front of the text, which begins beyond ASCII; 0 for none that is
// well-formed.
std::size_t SequenceLength(std::string_view text) {
  for (const Utf8Row& row : kUtf8Rows) {
    if (ByteAt(text, 0) < row.first_lead || ByteAt(text, 0) > row.last_lead) continue;
    if (text.size() <= row.following) return 0;
    if (ByteAt(text, 1) < row.least_second || ByteAt(text, 1) > row.most_second) return 0;
    for (std::size_t at = 2; at <= row.following; ++at) {
      if ((ByteAt(text, at) & 0xC0) != 0x80) return 0;
    }
    return row.following + std::size_t{1};
  }
  return 0;
}

// What a byte needs in a JSON string.
enum class Care : std::uint8_t { kNone, kEscape, kBeyondAscii };

constexpr std::array<Care, 256> kCares = [] {
  std::array<Care, 256> cares = {};
  for (std::size_t byte = 0; byte < cares.size(); ++byte) {
    if (byte >= kFirstBeyondAscii) {
      cares[byte] = Care::kBeyondAscii;
    } else if (byte < 0x20 || byte == 0x7F || byte == '"' || byte == '\\') {
      cares[byte] = Care::kEscape;
    }
  }
  return cares;
}();

void AppendEscape(std::string& json, std::uint8_t code) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  json += '\\';
  switch (code) {
    case '"':
    case '\\':
      json += static_cast<char>(code);
      return;
    case '\n':
      json += 'n';
      return;
    case '\t':
      json += 't';
      return;
    case '\r':
      json += 'r';
      return;
    default:
      json += "u00";
      json += kDigits[code >> 4];
      json += kDigits[code & 0xF];
  }
}

// Appends a character from U+0080 to U+00FF.
void AppendLatin1(std::string& json, std::uint8_t code) {
  constexpr std::uint8_t kFirstPrintable = 0xA0;
  if (code < kFirstPrintable) return AppendEscape(json, code);
  json += static_cast<char>(0xC0 | code >> 6);
  json += static_cast<char>(0x80 | (code & 0x3F));
}

// Appends the character beyond ASCII at `at` and returns where the next one is.
std::size_t AppendBeyondAscii(std::string& json, std::string_view text, std::size_t at, Encoding encoding) {
  constexpr std::uint8_t kLeadOfControls = 0xC2;  // U+0080 to U+009F are C2 80 to C2 9F
  const std::uint8_t byte = ByteAt(text, at);
  if (encoding == Encoding::kLatin1) {
    AppendLatin1(json, byte);
    return at + 1;
  }
  if (byte == kLeadOfControls && at + 1 < text.size()) {
    AppendLatin1(json, ByteAt(text, at + 1));
    return at + 2;
  }
  json += text[at];
  return at + 1;
}

}  // namespace

Encoding EncodingOf(std::string_view text) {
  for (text.remove_prefix(AsciiLength(text)); !text.empty(); text.remove_prefix(AsciiLength(text))) {
    const std::size_t length = SequenceLength(text);
    if (length == 0) return Encoding::kLatin1;
    text.remove_prefix(length);
  }
  return Encoding::kUtf8;
}

void AppendJsonString(std::string& json, std::string_view text, Encoding encoding) {
  json += '"';
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t start = at;
    while (at < text.size() && kCares[ByteAt(text, at)] == Care::kNone) ++at;
    json.append(text.data() + start, at - start);
    if (at == text.size()) break;
    if (kCares[ByteAt(text, at)] == Care::kEscape) {
      AppendEscape(json, ByteAt(text, at));
      ++at;
    } else {
      at = AppendBeyondAscii(json, text, at, encoding);
    }
  }
  json += '"';
}

}  // namespace zfc_json
