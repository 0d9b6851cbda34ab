// Wall-clock times as texts.
#pragma once

#include <sys/time.h>

#include <cstddef>

// Formats a wall-clock time as "month/day/year hour:minute:second.millisecond" in local time. Returns the
// length written, without the terminator; a time that the calendar cannot show gives an empty text.
int FormatLocalTime(const timeval& time, char* text, std::size_t size);
