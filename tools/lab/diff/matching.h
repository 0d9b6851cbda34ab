// Finds the items of two lists that are the same thing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace diff {

// Places in the two lists; none: the item is in the other list alone.
struct Match {
  std::optional<std::size_t> before, after;
};

// Pairs items of equal keys, the first with the first, and so on. The matches are in the order of the keys.
template <class List, class KeyOf>
std::vector<Match> MatchByKey(const List& before, const List& after, KeyOf key_of) {
  struct Places {
    std::vector<std::size_t> before, after;
  };
  std::map<decltype(key_of(before.front())), Places> by_key;
  for (std::size_t i = 0; i < before.size(); ++i) by_key[key_of(before[i])].before.push_back(i);
  for (std::size_t i = 0; i < after.size(); ++i) by_key[key_of(after[i])].after.push_back(i);
  std::vector<Match> matches;
  matches.reserve(by_key.size());
  for (const auto& [key, places] : by_key) {
    for (std::size_t i = 0; i < std::max(places.before.size(), places.after.size()); ++i) {
      Match& match = matches.emplace_back();
      if (i < places.before.size()) match.before = places.before[i];
      if (i < places.after.size()) match.after = places.after[i];
    }
  }
  return matches;
}

// Whether what is in both lists comes in another order.
inline bool IsReordered(std::vector<Match> matches) {
  std::erase_if(matches, [](const Match& match) { return !match.before || !match.after; });
  std::sort(matches.begin(), matches.end(),
            [](const Match& one, const Match& other) { return *one.before < *other.before; });
  return !std::is_sorted(matches.begin(), matches.end(),
                         [](const Match& one, const Match& other) { return *one.after < *other.after; });
}

}  // namespace diff
