// What is wrong in a file: all of it, in the order of its lines.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <tuple>

namespace lab {

// A place in a file. Lines and columns count from 1; line 0 is the file as a whole.
struct Place {
  int line = 0;
  int column = 0;
  bool operator==(const Place&) const = default;
};

// Collects mistakes. One that is found twice, as in a part that several aliases name, is kept once.
class Mistakes {
 public:
  static constexpr std::size_t kShown = 100;

  void Add(Place place, std::string what);

  bool Empty() const { return found_ == 0; }

  // So many that reading on shows nothing new.
  bool Enough() const { return found_ >= kEnough; }

  // One line for each of the first kShown: "<file>:<line>:<column>: <what>", then how many more there are.
  // Without a line end after the last; empty when there are none.
  std::string Report(const std::string& file) const;

 private:
  static constexpr std::size_t kEnough = 10000;

  std::set<std::tuple<int, int, std::string>> kept_;  // line, column, what
  std::size_t found_ = 0;
};

}  // namespace lab
