// What the calls of the tests' device library have in common. The calls of one group are in one file.
#pragma once

#include <cstddef>
#include <string>

#include "framework/device_library/calls.h"

namespace hostile {

// An environment variable, or an empty text.
std::string Setting(const std::string& name);

// Appends a line to the trace.
void Trace(const std::string& line);

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

// How the trace shows arguments.
std::string NameOf(const DeviceHandle* handle);
std::string Quoted(const char* text);
std::string BufferText(const void* buffer, std::size_t size);  // "zeroed buffer" or "used buffer"
std::string Hex(const void* record, std::size_t size);

// What every call does first: traces itself, chatters, pauses. Gives its result: that of its setting, else
// `without_setting`.
LibraryStatus Answer(const char* call, const std::string& arguments, LibraryStatus without_setting = 0);

bool AllZero(const void* buffer, std::size_t size);

// Writes the bytes of a setting, hexadecimal digits, over the start of a buffer.
void Fill(const char* setting, void* target, std::size_t size);

// A read that fills a record: the trace shows its handle and buffer. Nothing is written on a failure,
// unless HOSTILE_FILL_FAILED is set.
LibraryStatus ReadRecord(const char* call, const char* setting, const DeviceHandle* handle, void* out,
                         std::size_t size);

}  // namespace hostile
