// The words of a command line: how they compare and how options are found among them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// What is left of a command line. Matching a node removes its words, so a command sees its arguments from
// word 0 on.
using Words = std::vector<std::string>;

// The byte with A to Z lowered; every other byte, those beyond ASCII included, stays as it is.
char ToLowerAscii(char byte);

// Compares two words ignoring the case of A to Z. Returns less than, equal to or greater than 0, as strcmp
// does.
int CompareNoCase(std::string_view word, std::string_view text);

// True when the two words are the same, ignoring the case of A to Z.
inline bool EqualNoCase(std::string_view word, std::string_view text) {
  return CompareNoCase(word, text) == 0;
}

// True for "help", "/h", "/help", "-h", "-help", "/?" and "?".
bool IsHelpWord(std::string_view word);

// The word at `index`, or an empty text when the user gave fewer words.
std::string_view WordAt(const Words& words, std::size_t index);

// Finds `first` with `second` right after it, or, when `first` is empty, `second` alone. Stores the position
// of the first such place in `index` and returns true; stores -1 and returns false when there is none.
bool FindWordPair(const Words& words, std::string_view first, std::string_view second, int& index);

// Finds the first word equal to `long_name` or `short_name` (an empty name matches nothing) and copies the
// word after it to `value`. False when there is no such word, or when it is the last one and so has no value.
bool FindOption(const Words& words, std::string_view long_name, std::string_view short_name,
                std::string& value);

// The same, and erases the option word, also one without a value.
bool GetOptionValue(Words& words, std::string_view long_name, std::string_view short_name,
                    std::string& value);
