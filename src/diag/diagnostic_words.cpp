#include "diag/diagnostic_words.h"

#include <cstdlib>
#include <string>
#include <string_view>

StatusCode RefuseWord(const CommandRun& run, std::size_t index, const char* what) {
  const std::string_view word = WordAt(run.words, index);
  return run.Refuse(kInvalidParameter, "Invalid %s %.*s", what, static_cast<int>(word.size()), word.data());
}

std::int64_t ReadDecimal(const Words& words, std::size_t index) {
  const std::string word(WordAt(words, index));
  return std::strtoll(word.c_str(), nullptr, 10);
}

StatusCode ReadCount(const CommandRun& run, std::size_t index, const char* what, std::uint32_t maximum,
                     std::uint32_t& value) {
  const std::int64_t number = ReadDecimal(run.words, index);
  if (number < 1 || number > maximum) return RefuseWord(run, index, what);
  value = static_cast<std::uint32_t>(number);
  return kSuccess;
}
