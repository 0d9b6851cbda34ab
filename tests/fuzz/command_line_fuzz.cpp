// A line typed at the shell, split into words.
//
// Oracles. parse(print(x)) = x: any words, quoted as a user can quote them, come back as they were. A second
// implementation of the splitting, for lines of any bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "framework/command_line.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

constexpr std::string_view kBlanks = " \t\r\n";

// From quote to quote: outside of them blanks part words, inside they do not. Nothing when quotes are left
// open.
std::optional<Words> Split(std::string_view line) {
  Words words;
  bool in_word = false;
  bool in_quotes = false;
  for (;;) {
    const std::size_t quote = line.find('"');
    std::string_view part = line.substr(0, quote);
    while (!part.empty()) {
      const std::size_t length = in_quotes ? part.size() : std::min(part.find_first_of(kBlanks), part.size());
      if (length == 0) {
        in_word = false;
        part.remove_prefix(1);
        continue;
      }
      if (!in_word) words.emplace_back();
      in_word = true;
      words.back() += part.substr(0, length);
      part.remove_prefix(length);
    }
    if (quote == std::string_view::npos) break;
    if (!in_quotes && !in_word) words.emplace_back();
    in_word = true;
    in_quotes = !in_quotes;
    line.remove_prefix(quote + 1);
  }
  return in_quotes ? std::nullopt : std::optional(words);
}

// The line's bytes up to a line end are a word each; a quote can't be part of one.
Words WordsOf(std::string_view line) {
  Words words = {""};
  for (const char c : line) {
    if (c == '\n') {
      words.emplace_back();
    } else if (c != '"') {
      words.back() += c;
    }
  }
  return words;
}

// Quotes around a whole word, or around each of its blanks.
std::string Line(const Words& words) {
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += word.size() % 2 == 0 ? " " : "\t\r\n ";
    if (word.size() % 3 == 0) {
      line += '"' + word + '"';
      continue;
    }
    for (const char c : word)
      line += kBlanks.find(c) == std::string_view::npos ? std::string(1, c) : std::string{'"', c, '"'};
  }
  return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line = std::string(reinterpret_cast<const char*>(data), size).c_str();
  const Words before = {"word"};
  Words words = before;
  const bool splits = ParseInputLine(line.c_str(), words);
  const std::optional<Words> expected = Split(line);
  Require(splits == expected.has_value());
  Words all = before;
  if (splits) all.insert(all.end(), expected->begin(), expected->end());
  Require(words == all);

  const Words typed = WordsOf(line);
  Words read;
  Require(ParseInputLine(Line(typed).c_str(), read) && read == typed);
  return 0;
}
