// What the texts of staged files and options mean, read a second time and in another way than the program
// reads them: character by character, without the C library's conversions.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace model {

inline bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

inline char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

inline bool SameWord(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    if (Lower(one[i]) != Lower(other[i])) return false;
  }
  return true;
}

inline int Digit(char c, int base) {
  const char lower = Lower(c);
  const int value = c >= '0' && c <= '9' ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : base;
  return value < base ? value : -1;
}

// The number that a text begins with, blanks and a sign ahead of it allowed, in 64 bits that stop at their
// end; nothing without a digit. Removes it from the text.
inline std::optional<std::uint64_t> TakeNumber(std::string_view& text, int base) {
  std::size_t at = 0;
  while (at < text.size() && IsSpace(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (base == 16 && at + 2 < text.size() && text[at] == '0' && Lower(text[at + 1]) == 'x' &&
      Digit(text[at + 2], base) >= 0) {
    at += 2;
  }
  if (at == text.size() || Digit(text[at], base) < 0) return std::nullopt;
  unsigned __int128 number = 0;
  constexpr unsigned __int128 kEnd = UINT64_MAX;
  for (; at < text.size() && Digit(text[at], base) >= 0; ++at) {
    number = number > kEnd
                 ? number
                 : number * static_cast<unsigned>(base) + static_cast<unsigned>(Digit(text[at], base));
  }
  text.remove_prefix(at);
  if (number > kEnd) return UINT64_MAX;
  const auto value = static_cast<std::uint64_t>(number);
  return negative ? 0 - value : value;
}

// The low 32 bits; 0 without a number.
inline std::uint32_t NumberOf(std::string_view text) {
  return static_cast<std::uint32_t>(TakeNumber(text, 10).value_or(0));
}

// Eight octets with a colon between two. Removes them from the text.
inline std::optional<std::array<std::uint8_t, 8>> TakeName(std::string_view& text) {
  std::array<std::uint8_t, 8> name = {};
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (i > 0) {
      if (!text.starts_with(':')) return std::nullopt;
      text.remove_prefix(1);
    }
    const std::optional<std::uint64_t> octet = TakeNumber(text, 16);
    if (!octet.has_value()) return std::nullopt;
    name[i] = static_cast<std::uint8_t>(*octet);
  }
  return name;
}

// The same; what follows them does not count.
inline std::optional<std::array<std::uint8_t, 8>> NameOf(std::string_view text) {
  return TakeName(text);
}

// Takes the next piece of a file from the text: up to a line's end, at most `limit` bytes.
inline std::string_view TakePiece(std::string_view& text, std::size_t limit) {
  std::size_t length = 0;
  while (length < text.size() && length < limit) {
    if (text[length++] == '\n') break;
  }
  const std::string_view piece = text.substr(0, length);
  text.remove_prefix(length);
  return piece;
}

// The lines of a file that have a key and a value, read once for all look-ups.
class Lines {
 public:
  explicit Lines(std::string_view file) {
    while (!file.empty()) {
      std::string_view line = TakePiece(file, 1022);
      SkipSpaces(line);
      std::size_t end = 0;
      while (end < line.size() && line[end] != '=' && !IsSpace(line[end])) ++end;
      const std::string_view key = line.substr(0, end);
      const std::size_t equals = line.find('=', end);
      if (equals == std::string_view::npos || key.starts_with('#')) continue;
      line.remove_prefix(equals + 1);
      SkipSpaces(line);
      end = 0;
      while (end < line.size() && !IsSpace(line[end]) && line[end] != '#' && line[end] != '\0') ++end;
      lines_.emplace_back(key, line.substr(0, end));
    }
  }

  // The value of the first line with this key, as a buffer of `size` bytes holds it.
  std::optional<std::string> Value(std::string_view key, std::size_t size) const {
    for (const auto& [name, value] : lines_) {
      if (SameWord(name, key)) return std::string(value.substr(0, size - 1));
    }
    return std::nullopt;
  }

 private:
  static void SkipSpaces(std::string_view& text) {
    while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  }

  std::vector<std::pair<std::string_view, std::string_view>> lines_;
};

// The file with "key=value" in it.
inline std::string Updated(std::string_view file, std::string_view key, std::string_view value) {
  const std::string line = std::string(key) + "=" + std::string(value) + "\n";
  std::string result;
  bool written = false;
  while (!file.empty()) {
    const std::string_view piece = TakePiece(file, 511);
    const bool has_key = piece.find(key) != std::string_view::npos;
    written = written || has_key;
    result += has_key ? std::string_view(line) : piece;
  }
  return written ? result : result + line;
}

}  // namespace model
