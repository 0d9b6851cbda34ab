#include "recording/byte_text.h"

#include <algorithm>
#include <charconv>

namespace recording {
namespace {

using View = std::span<const std::uint8_t>;

constexpr std::size_t kLineBytes = 32;    // of a gap or an image on one line
constexpr std::size_t kLongestSkip = 8;   // zeros among them that are not worth an offset of their own
constexpr std::size_t kShortestRun = 6;   // of one byte
constexpr std::size_t kShortestText = 4;  // among other bytes

bool IsQuotable(std::uint8_t byte) {
  return byte >= 0x20 && byte < 0x7f && byte != '"';
}

template <class Belongs>
std::size_t LengthWhile(View bytes, Belongs belongs) {
  return static_cast<std::size_t>(std::find_if_not(bytes.begin(), bytes.end(), belongs) - bytes.begin());
}

std::size_t RunLength(View bytes) {
  return LengthWhile(bytes, [first = bytes[0]](std::uint8_t byte) { return byte == first; });
}

void AppendToken(std::string& text, const std::string& token) {
  text += ' ';
  text += token;
}

// The bytes as tokens with a blank ahead of each: runs, texts of at least `shortest_text`, digits.
void AppendTokens(std::string& text, View bytes, std::size_t shortest_text) {
  std::string digits;
  const auto flush = [&] {
    if (!digits.empty()) AppendToken(text, digits);
    digits.clear();
  };
  while (!bytes.empty()) {
    const std::size_t run = RunLength(bytes);
    const std::size_t quoted = LengthWhile(bytes, IsQuotable);
    std::size_t taken = 1;
    if (run >= kShortestRun && run >= quoted) {
      flush();
      std::string token;
      AppendHex(token, bytes.first(1));
      AppendToken(text, token + '*' + std::to_string(run));
      taken = run;
    } else if (quoted >= shortest_text) {
      flush();
      AppendToken(
          text, '"' + std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(quoted)) + '"');
      taken = quoted;
    } else {
      AppendHex(digits, bytes.first(1));
    }
    bytes = bytes.subspan(taken);
  }
  flush();
}

void AppendOffset(std::string& text, std::size_t offset) {
  text += std::to_string(offset);
  text += ':';
}

bool IsZero(std::uint8_t byte) {
  return byte == 0;
}

// Calls visit(offset, part) for the parts between long runs of zeros, each without zeros at its ends.
template <class Visit>
void EachPart(View bytes, std::size_t offset, Visit visit) {
  while (true) {
    const std::size_t zeros = LengthWhile(bytes, IsZero);
    bytes = bytes.subspan(zeros);
    offset += zeros;
    if (bytes.empty()) return;
    std::size_t end = 0;  // of what is not zero
    std::size_t at = 0;
    while (at < bytes.size() && at - end <= kLongestSkip) {
      if (!IsZero(bytes[at])) end = at + 1;
      ++at;
    }
    visit(offset, bytes.first(end));
    bytes = bytes.subspan(end);
    offset += end;
  }
}

std::uint64_t NumberIn(View bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) number = number << 8 | bytes[i - 1];
  return number;
}

// Each byte in decimal or hexadecimal, joined.
void AppendJoined(std::string& text, View bytes, char joint, bool decimal) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) text += joint;
    if (decimal) {
      text += std::to_string(bytes[i]);
    } else {
      AppendHex(text, bytes.subspan(i, 1));
    }
  }
}

void AppendComment(std::string& text, const Field& field, View bytes) {
  text.append("  # ").append(field.name);
  switch (field.form) {
    case Form::kNumber:
      text.append(" ").append(std::to_string(NumberIn(bytes)));
      break;
    case Form::kName:
      text += ' ';
      AppendJoined(text, bytes, ':', false);
      break;
    case Form::kVersion:
      text += ' ';
      AppendJoined(text, bytes, '.', true);
      break;
    case Form::kHex:
    case Form::kText:
      break;
  }
}

void AppendField(std::string& text, std::size_t indent, const Field& field, View record) {
  const View bytes = record.subspan(field.offset, field.size);
  View part = bytes;
  while (!part.empty() && part.back() == 0) part = part.first(part.size() - 1);
  if (part.empty()) return;
  text.append(indent, ' ');
  AppendOffset(text, field.offset);
  AppendTokens(text, part, field.form == Form::kText ? 1 : field.size + std::size_t{1});
  AppendComment(text, field, bytes);
  text += '\n';
}

void AppendGap(std::string& text, std::size_t indent, std::size_t offset, View bytes) {
  EachPart(bytes, offset, [&](std::size_t at, View part) {
    while (!part.empty()) {
      // A run or a text longer than a line stays whole.
      std::size_t length = RunLength(part);
      if (length < kLineBytes) length = LengthWhile(part, IsQuotable);
      if (length < kLineBytes) length = std::min(part.size(), kLineBytes);
      text.append(indent, ' ');
      AppendOffset(text, at);
      AppendTokens(text, part.first(length), kShortestText);
      text += '\n';
      part = part.subspan(length);
      at += length;
    }
  });
}

// One pass over a text.
class ByteReader {
 public:
  ByteReader(std::string_view text, std::span<std::uint8_t> bytes) : text_(text), bytes_(bytes) {}

  const char* Read() {
    while (SkipBlanks()) {
      const char* const mistake = text_[0] == '"' ? ReadText() : ReadWord();
      if (mistake != nullptr) return mistake;
    }
    return nullptr;
  }

  std::size_t Line() const { return line_; }

 private:
  // Moves to the next token; false at the end of the text.
  bool SkipBlanks() {
    while (!text_.empty()) {
      if (text_[0] == '#') {
        text_.remove_prefix(std::min(text_.find('\n'), text_.size()));
      } else if (text_[0] == '\n' || text_[0] == ' ') {
        if (text_[0] == '\n') ++line_;
        text_.remove_prefix(1);
      } else {
        return true;
      }
    }
    return false;
  }

  const char* ReadText() {
    const std::size_t end = text_.find_first_of("\"\n", 1);
    if (end == std::string_view::npos || text_[end] != '"') return "a text without its closing quote";
    for (const char character : text_.substr(1, end - 1)) {
      if (!Put(static_cast<std::uint8_t>(character), 1)) return kTooMany;
    }
    text_.remove_prefix(end + 1);
    return nullptr;
  }

  const char* ReadWord() {
    const std::string_view word = text_.substr(0, text_.find_first_of(" \n#\""));
    text_.remove_prefix(word.size());
    if (word.back() == ':') {
      return ReadDecimal(word.substr(0, word.size() - 1), at_) && at_ < bytes_.size()
                 ? nullptr
                 : "an offset outside the record";
    }
    std::size_t times = 1;
    const std::size_t star = word.find('*');
    const std::string_view digits = word.substr(0, star);
    if (star != std::string_view::npos &&
        (digits.size() != 2 || !ReadDecimal(word.substr(star + 1), times))) {
      return "expected a byte in front of '*' and a number after it";
    }
    if (digits.size() % 2 != 0) return "an odd number of hexadecimal digits";
    for (std::size_t i = 0; i < digits.size(); i += 2) {
      std::uint8_t byte = 0;
      const char* const begin = digits.data() + i;
      if (std::from_chars(begin, begin + 2, byte, 16).ptr != begin + 2) return "expected hexadecimal digits";
      if (!Put(byte, times)) return kTooMany;
    }
    return nullptr;
  }

  static bool ReadDecimal(std::string_view digits, std::size_t& number) {
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end;
  }

  bool Put(std::uint8_t byte, std::size_t times) {
    if (times > bytes_.size() - at_) return false;
    std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), times, byte);
    at_ += times;
    return true;
  }

  static constexpr const char* kTooMany = "more bytes than the record has";

  std::string_view text_;
  std::span<std::uint8_t> bytes_;
  std::size_t at_ = 0;
  std::size_t line_ = 0;
};

}  // namespace

void AppendHex(std::string& text, View bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0f];
  }
}

void AppendRecord(std::string& text, std::size_t indent, View bytes, std::span<const Field> fields) {
  std::size_t end = 0;  // of the field before
  for (const Field& field : fields) {
    AppendGap(text, indent, end, bytes.subspan(end, field.offset - end));
    AppendField(text, indent, field, bytes);
    end = std::size_t{field.offset} + field.size;
  }
  AppendGap(text, indent, end, bytes.subspan(end));
}

void AppendChange(std::string& text, View bytes, View before) {
  constexpr std::size_t kWorthAnOffset = 4;  // equal bytes between two differences
  std::size_t at = 0;
  while (true) {
    while (at < bytes.size() && bytes[at] == before[at]) ++at;
    if (at == bytes.size()) return;
    const std::size_t begin = at;
    std::size_t end = at;
    for (; at < bytes.size() && at - end < kWorthAnOffset; ++at) {
      if (bytes[at] != before[at]) end = at + 1;
    }
    at = end;
    if (!text.empty() && text.back() != ' ') text += ' ';
    AppendOffset(text, begin);
    AppendTokens(text, bytes.subspan(begin, end - begin), kShortestText);
  }
}

const char* ReadBytes(std::string_view text, std::span<std::uint8_t> bytes, std::size_t& line) {
  ByteReader reader(text, bytes);
  const char* const mistake = reader.Read();
  line = reader.Line();
  return mistake;
}

}  // namespace recording
