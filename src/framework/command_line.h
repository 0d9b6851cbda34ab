// Splits a line typed at the shell into words.
#pragma once

#include <cstddef>

#include "framework/words.h"

// Splits `text` at blanks, tabs, carriage returns and line feeds. Double quotes keep those in a word and are
// dropped; a quoted empty text is a word; there is no escape character. Returns the tokens in one allocation
// that the caller releases with free(), closed by a null, and stores their number in `count`. Null when the
// text ends inside quotes or memory is exhausted.
char** SplitCommandLine(const char* text, std::size_t& count);

// Appends the tokens of `line` to `words`. False when the line cannot be split.
bool ParseInputLine(const char* line, Words& words);
