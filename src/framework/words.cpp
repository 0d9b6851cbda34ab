#include "framework/words.h"

#include <algorithm>

namespace {

Words::const_iterator FindOptionWord(const Words& words, std::string_view long_name,
                                     std::string_view short_name) {
  return std::find_if(words.begin(), words.end(), [=](const std::string& word) {
    return (!long_name.empty() && EqualNoCase(word, long_name)) ||
           (!short_name.empty() && EqualNoCase(word, short_name));
  });
}

}  // namespace

char ToLowerAscii(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

int CompareNoCase(std::string_view word, std::string_view text) {
  const std::size_t shared = std::min(word.size(), text.size());
  for (std::size_t i = 0; i < shared; ++i) {
    const auto left = static_cast<unsigned char>(ToLowerAscii(word[i]));
    const auto right = static_cast<unsigned char>(ToLowerAscii(text[i]));
    if (left != right) return left < right ? -1 : 1;
  }
  if (word.size() == text.size()) return 0;
  return word.size() < text.size() ? -1 : 1;
}

bool IsHelpWord(std::string_view word) {
  static constexpr std::string_view kHelpWords[] = {"help", "/h", "/help", "-h", "-help", "/?", "?"};
  return std::any_of(std::begin(kHelpWords), std::end(kHelpWords),
                     [word](std::string_view help) { return EqualNoCase(word, help); });
}

std::string_view WordAt(const Words& words, std::size_t index) {
  return index < words.size() ? std::string_view{words[index]} : std::string_view{};
}

bool FindWordPair(const Words& words, std::string_view first, std::string_view second, int& index) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool here = first.empty() ? EqualNoCase(words[i], second)
                                    : i + 1 < words.size() && EqualNoCase(words[i], first) &&
                                          EqualNoCase(words[i + 1], second);
    if (here) {
      index = static_cast<int>(i);
      return true;
    }
  }
  index = -1;
  return false;
}

bool FindOption(const Words& words, std::string_view long_name, std::string_view short_name,
                std::string& value) {
  const auto option = FindOptionWord(words, long_name, short_name);
  if (option == words.end() || option + 1 == words.end()) return false;
  value = option[1];
  return true;
}

bool GetOptionValue(Words& words, std::string_view long_name, std::string_view short_name,
                    std::string& value) {
  const bool found = FindOption(words, long_name, short_name, value);
  const auto option = FindOptionWord(words, long_name, short_name);
  if (option != words.end()) words.erase(option);
  return found;
}
