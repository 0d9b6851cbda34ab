#include "framework/command_line.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

bool IsSeparator(char character) {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

}  // namespace

char** SplitCommandLine(const char* text, std::size_t& count) {
  count = 0;
  const std::size_t length = std::strlen(text);
  // Two tokens are at least one separator apart: no more than half the characters begin one. One more pointer
  // closes the array.
  const std::size_t pointer_bytes = (length + 2) / 2 * sizeof(char*) + sizeof(char*);
  char** const tokens = static_cast<char**>(std::malloc(pointer_bytes + length + 2));
  if (tokens == nullptr) return nullptr;

  char* copy = reinterpret_cast<char*>(tokens) + pointer_bytes;
  bool in_quotes = false;
  bool at_separator = true;
  for (; *text != '\0'; ++text) {
    if (in_quotes && *text == '"') {
      in_quotes = false;
    } else if (!in_quotes && IsSeparator(*text)) {
      *copy++ = '\0';
      at_separator = true;
    } else {
      if (at_separator) tokens[count++] = copy;
      at_separator = false;
      if (!in_quotes && *text == '"') {
        in_quotes = true;
      } else {
        *copy++ = *text;
      }
    }
  }
  if (in_quotes) {
    std::free(tokens);
    count = 0;
    return nullptr;
  }
  *copy = '\0';
  tokens[count] = nullptr;
  return tokens;
}

bool ParseInputLine(const char* line, Words& words) {
  std::size_t count = 0;
  const std::unique_ptr<char*, void (*)(void*)> tokens(SplitCommandLine(line, count), &std::free);
  if (tokens == nullptr) return false;
  words.insert(words.end(), tokens.get(), tokens.get() + count);
  return true;
}
