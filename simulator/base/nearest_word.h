// The word that somebody may have meant.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace lab {

// The word among `known` that `word` is a likely slip of, in the case of letters or by a few of them; empty
// when none is close.
std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known);

// The end of a message: "; did you mean 'dahlia'?" where there is such a word, else empty.
std::string DidYouMean(std::string_view word, std::span<const std::string_view> known);

}  // namespace lab
