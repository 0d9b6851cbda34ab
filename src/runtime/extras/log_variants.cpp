#include "runtime/extras/log_variants.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "runtime/debug_log.h"
#include "runtime/debug_log_writer.h"
#include "runtime/text.h"

namespace {

constexpr std::size_t kWideMessageSize = 524288;

// Guarded by the logging lock.
constinit wchar_t wide_message[kWideMessageSize];

void FormatWideMessage(const wchar_t* format, std::va_list arguments) {
  errno = 0;
  if (std::vswprintf(wide_message, kWideMessageSize, format, arguments) >= 0) return;
  // A message that does not fit is cut; after a failed conversion nothing certain is left.
  wide_message[errno == EILSEQ ? 0 : kWideMessageSize - 1] = L'\0';
}

// Converts what a line can hold of the message into `text`, which holds `size` bytes.
void NarrowWideMessage(char* text, std::size_t size) {
  std::mbstate_t state{};
  std::size_t length = 0;
  for (const wchar_t* wide = wide_message; *wide != L'\0'; ++wide) {
    char bytes[MB_LEN_MAX];
    std::size_t count = std::wcrtomb(bytes, *wide, &state);
    if (count == static_cast<std::size_t>(-1)) {
      bytes[0] = '?';
      count = 1;
      state = {};
    }
    if (length + count >= size) break;
    std::memcpy(text + length, bytes, count);
    length += count;
  }
  text[length] = '\0';
}

void WriteWide(const char* tag, const wchar_t* format, std::va_list arguments) {
  DebugLogWriter writer;
  FormatWideMessage(format, arguments);
  char message[kFormatLimit + 1];
  NarrowWideMessage(message, sizeof message);
  writer.WriteMessage(tag, "", message);
}

void WriteAt(const char* tag, const char* file, int line, const char* format, std::va_list arguments) {
  char place[kFormatLimit + 1];
  std::snprintf(place, sizeof place, " %s (%d)", file, line);
  char context[kFormatLimit + 1];
  std::snprintf(context, sizeof context, "%-25s", place);
  DebugLogWriter().Write(tag, context, format, arguments);
}

bool IsEmpty(const wchar_t* format) {
  return format == nullptr || format[0] == L'\0';
}
bool IsEmpty(const char* format) {
  return format == nullptr || format[0] == '\0';
}

}  // namespace

void DebugLogWide(const wchar_t* format, ...) {
  if (DebugMask() == 0 || IsEmpty(format)) return;
  std::va_list arguments;
  va_start(arguments, format);
  WriteWide(nullptr, format, arguments);
  va_end(arguments);
}

void DebugLogLevelWide(std::int32_t level, const wchar_t* format, ...) {
  if (!IsDebugLevelOn(level) || IsEmpty(format)) return;
  std::va_list arguments;
  va_start(arguments, format);
  WriteWide(DebugLevelTag(level), format, arguments);
  va_end(arguments);
}

void DebugLogAt(const char* file, int line, const char* format, ...) {
  if (DebugMask() == 0 || IsEmpty(format)) return;
  std::va_list arguments;
  va_start(arguments, format);
  WriteAt(nullptr, file, line, format, arguments);
  va_end(arguments);
}

void DebugLogLevelAt(std::int32_t level, const char* file, int line, const char* format, ...) {
  if (!IsDebugLevelOn(level) || IsEmpty(format)) return;
  std::va_list arguments;
  va_start(arguments, format);
  WriteAt(DebugLevelTag(level), file, line, format, arguments);
  va_end(arguments);
}
