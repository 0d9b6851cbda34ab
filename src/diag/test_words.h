// How the words of the diagnostic tests read. A word that is missing reads as an empty one.
#pragma once

#include <cstdint>

#include "framework/words.h"

// The word at `index` as a decimal number: what stands behind its digits is left aside, a word that begins
// with no number gives 0, and a number beyond 64 bits the greatest or the smallest one.
std::int64_t ReadDecimal(const Words& words, std::size_t index);

// Reads the word at `index` as a decimal number from 1 to `maximum`. False, with `value` unchanged, for any
// other.
bool ReadCount(const Words& words, std::size_t index, std::uint32_t maximum, std::uint32_t& value);
