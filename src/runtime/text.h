#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Longest result of FormatString, in characters; it bounds every debug line as well.
inline constexpr std::size_t kFormatLimit = 1024;

// Results of the bounded text functions.
inline constexpr int kTextDone = 0;
inline constexpr int kInvalidArgument = 22;
inline constexpr int kRangeError = 34;

// The count that means "all of the text" in BoundedCopy.
inline constexpr std::size_t kWholeText = SIZE_MAX;

// Formats into `target`, cut silently at kFormatLimit characters. Arguments may point into `target`. A null
// format and a failed conversion leave `target` empty.
void FormatString(std::string& target, const char* format, ...) __attribute__((format(printf, 2, 3)));

// FormatString for a caller that has an argument list of its own.
void FormatStringV(std::string& target, const char* format, std::va_list arguments)
    __attribute__((format(printf, 2, 0)));

// Appends `text` to the terminated text in `buffer`, which holds `size` bytes. Returns kTextDone;
// kInvalidArgument for a null pointer, a size of 0 or a buffer without terminator; kRangeError, with the
// buffer unchanged, for a text that does not fit with its terminator.
int BoundedAppend(char* buffer, std::size_t size, const char* text);

// Copies at most `count` characters of `text` (kWholeText: all of them) and a terminator into `target`, which
// holds `size` bytes. Returns kTextDone, or kInvalidArgument for a null or zero argument and for a count that
// does not fit with a terminator, however short the text is; in this last case the target is emptied.
int BoundedCopy(char* target, std::size_t size, const char* text, std::size_t count);

// Returns what printf would make of `text` as a format with no argument to show: "%%" becomes "%", a complete
// and valid conversion disappears, and every other percent sign stays. Text from a device goes through here
// and is then printed through "%s"; it never reaches the C library as a format.
std::string DropConversions(std::string_view text);
