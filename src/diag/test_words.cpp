#include "diag/test_words.h"

#include <cstdlib>
#include <string>

std::int64_t ReadDecimal(const Words& words, std::size_t index) {
  const std::string word(WordAt(words, index));
  return std::strtoll(word.c_str(), nullptr, 10);
}

bool ReadCount(const Words& words, std::size_t index, std::uint32_t maximum, std::uint32_t& value) {
  const std::int64_t number = ReadDecimal(words, index);
  if (number < 1 || number > maximum) return false;
  value = static_cast<std::uint32_t>(number);
  return true;
}
