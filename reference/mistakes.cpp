#include "reference/mistakes.h"

#include <cstdio>

namespace reference {

void Mistakes::Add(const FilePlace& place, const std::string& text) {
  lines_.push_back(place.file + ":" + std::to_string(place.line) + ": " + text);
}

void Mistakes::Print() const {
  for (const std::string& line : lines_) std::fprintf(stderr, "%s\n", line.c_str());
}

}  // namespace reference
