// A line typed at the shell, split into words.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "framework/command_line.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line(reinterpret_cast<const char*>(data), size);
  Words words;
  const bool split = ParseInputLine(line.c_str(), words);

  // A line splits exactly when its quotes close, and the words hold nothing that the line does not.
  const std::string text = line.c_str();
  std::size_t quotes = 0;
  for (const char character : text) quotes += character == '"' ? 1 : 0;
  if (split != (quotes % 2 == 0)) std::abort();
  std::size_t characters = 0;
  for (const std::string& word : words) characters += word.size();
  if (characters > text.size() || (!split && !words.empty())) std::abort();
  return 0;
}
