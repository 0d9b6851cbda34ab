// How the words of the diagnostics read. A word that is missing reads as an empty one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/command_run.h"
#include "framework/status.h"
#include "framework/words.h"

// Logs that the word at `index` is no valid `what` and returns kInvalidParameter.
StatusCode RefuseWord(const CommandRun& run, std::size_t index, const char* what);

// The word at `index` as a decimal number. What follows its digits is left aside, a word that begins with no
// number gives 0, and a number beyond 64 bits the greatest or the smallest one.
std::int64_t ReadDecimal(const Words& words, std::size_t index);

// Reads the word at `index`, named `what` in the log, as a decimal number from 1 to `maximum`. Refuses any
// other with `value` unchanged.
StatusCode ReadCount(const CommandRun& run, std::size_t index, const char* what, std::uint32_t maximum,
                     std::uint32_t& value);
