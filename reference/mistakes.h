// What is wrong with the descriptions, each mistake with its place. All of them are collected: one run shows
// all.
#pragma once

#include <string>
#include <vector>

namespace reference {

// A line of a file, from 1 on.
struct FilePlace {
  std::string file;
  int line = 0;
};

class Mistakes {
 public:
  void Add(const FilePlace& place, const std::string& text);

  bool None() const { return lines_.empty(); }
  const std::vector<std::string>& Lines() const { return lines_; }

  // Writes each as "FILE:LINE: text" to standard error.
  void Print() const;

 private:
  std::vector<std::string> lines_;
};

}  // namespace reference
