// A text in which "^" marks the place of a mistake, so that a test shows it where it is.
#pragma once

#include <string>

struct MarkedText {
  std::string text;   // without the mark
  std::string place;  // ":<line>:<column>" of what follows the mark; empty without one
};

inline MarkedText WithoutMark(std::string marked) {
  const std::size_t at = marked.find('^');
  if (at == std::string::npos) return {marked, ""};
  std::size_t line = 1;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < at; ++i) {
    if (marked[i] != '\n') continue;
    ++line;
    begin = i + 1;
  }
  return {marked.erase(at, 1), ":" + std::to_string(line) + ":" + std::to_string(at - begin + 1)};
}
