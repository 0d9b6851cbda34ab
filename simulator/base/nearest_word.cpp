#include "base/nearest_word.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lab {
namespace {

// Shorter words are numbers and the like: every one is close to every other.
constexpr std::size_t kShortestWord = 3;
constexpr std::size_t kLongestWord = 48;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// How many letters have to be added, dropped, changed or swapped with their neighbour to make one word of the
// other. Both are at most kLongestWord long.
std::size_t Distance(std::string_view from, std::string_view to) {
  using Row = std::array<std::size_t, kLongestWord + 1>;
  std::array<Row, 3> rows{};  // for the letters of `from` so far: now, one fewer, two fewer
  for (std::size_t j = 0; j <= to.size(); ++j) rows[0][j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    rows = {Row{}, rows[0], rows[1]};
    rows[0][0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const char a = Lower(from[i - 1]);
      const char b = Lower(to[j - 1]);
      std::size_t least = std::min({rows[1][j] + 1, rows[0][j - 1] + 1, rows[1][j - 1] + (a == b ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && a == Lower(to[j - 2]) && Lower(from[i - 2]) == b;
      if (swapped) least = std::min(least, rows[2][j - 2] + 1);
      rows[0][j] = least;
    }
  }
  return rows[0][to.size()];
}

// One slip for every three letters.
std::size_t SlipsAllowed(std::string_view word) {
  return std::min<std::size_t>(word.size() / 3, 3);
}

}  // namespace

std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known) {
  if (word.size() < kShortestWord || word.size() > kLongestWord) return {};
  std::string_view nearest;
  std::size_t least = SlipsAllowed(word) + 1;
  for (const std::string_view candidate : known) {
    if (candidate.size() < kShortestWord || candidate.size() > kLongestWord) continue;
    const std::size_t distance = Distance(word, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string DidYouMean(std::string_view word, std::span<const std::string_view> known) {
  const std::string_view nearest = NearestWord(word, known);
  return nearest.empty() ? "" : "; did you mean '" + std::string(nearest) + "'?";
}

}  // namespace lab
