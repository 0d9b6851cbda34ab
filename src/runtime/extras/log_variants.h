#pragma once

#include <cstdint>

// DebugLog and DebugLogLevel for wide-character formats. A character that the locale cannot show becomes "?".
void DebugLogWide(const wchar_t* format, ...);
void DebugLogLevelWide(std::int32_t level, const wchar_t* format, ...);

// DebugLog and DebugLogLevel with the place in the source after the process ID, as " file (line)" padded
// with blanks to 25 characters.
void DebugLogAt(const char* file, int line, const char* format, ...) __attribute__((format(printf, 3, 4)));
void DebugLogLevelAt(std::int32_t level, const char* file, int line, const char* format, ...)
    __attribute__((format(printf, 4, 5)));
