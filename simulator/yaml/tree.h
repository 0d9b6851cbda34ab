// A file of YAML as a tree of values with their places.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "base/limits.h"
#include "yaml/mistakes.h"

namespace lab {

struct YamlNode;

// A value and where it is. An alias has its own place; the node that it names has children with theirs.
struct YamlItem {
  const YamlNode* node = nullptr;
  Place place;
};

struct YamlPair {
  std::string key;
  Place key_place;
  YamlItem value;
};

struct YamlNode {
  enum class Kind : std::uint8_t { kNothing, kText, kList, kMap };
  Kind kind = Kind::kNothing;
  bool complete = true;      // false while its own content is being read
  std::uint16_t levels = 0;  // of lists and maps, this one included
  std::uint32_t values = 1;  // all that it holds, itself included, with aliases resolved
  std::string text;
  std::vector<YamlItem> items;  // of a list
  std::vector<YamlPair> pairs;  // of a map; a key that is there twice is kept once
};

class YamlTree {
 public:
  // Parses a whole file. Returns false, with the reason among the mistakes, when it can't be read further
  // than some place or is too large. Keys that are no words or are there twice are mistakes that do not end
  // the reading.
  bool Read(const std::string& text, const Limits& limits, Mistakes& mistakes);

  // The document. An empty file holds nothing.
  YamlItem Root() const { return root_; }

 private:
  std::deque<YamlNode> nodes_;
  YamlItem root_;
};

}  // namespace lab
