#pragma once

#include <cstddef>
#include <cstdint>

// Message types of CoreLogMessage.
inline constexpr int kCoreInfo = 1;
inline constexpr int kCoreWarning = 2;
inline constexpr int kCoreError = 3;
inline constexpr int kCoreDebug = 100;

// What the program offers the device library, which looks these functions up by name in the executable.
#pragma GCC visibility push(default)
extern "C" {

// Formats a message of the given type; prints it on standard output only when the quiet flag is zero. The
// message is cut at 2047 characters. Returns 0 always.
int CoreLogMessage(int type, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Returns a block of `size` bytes for CoreFree; null for size 0 and when memory is short.
void* CoreMalloc(std::size_t size);

// As CoreMalloc, with all bytes zero.
void* CoreZMalloc(std::size_t size);

// Frees a block of CoreMalloc or CoreZMalloc; null is ignored.
void CoreFree(void* pointer);

// Returns the name of a message type, "Unknown" for any but the four above.
const char* TranslateMessageTypeToString(int type);
}
#pragma GCC visibility pop

// Sets the quiet flag, which starts at 1: nonzero keeps CoreLogMessage from printing.
void SetCoreLogQuiet(std::int32_t quiet);
