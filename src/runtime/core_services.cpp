#include "runtime/core_services.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "runtime/text.h"

namespace {

constexpr std::size_t kMessageSize = 2048;
constexpr std::size_t kLineSize = 2080;  // the message, the longest type name, ": " and the line end

constinit std::atomic<std::int32_t> quiet_flag = 1;

}  // namespace

void SetCoreLogQuiet(std::int32_t quiet) {
  quiet_flag.store(quiet, std::memory_order_relaxed);
}

int CoreLogMessage(int type, const char* format, ...) {
  if (format == nullptr || quiet_flag.load(std::memory_order_relaxed) != 0) return 0;
  char message[kMessageSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  if (length < 0) return 0;
  char line[kLineSize];
  std::snprintf(line, sizeof line, "%s: %s\r\n", TranslateMessageTypeToString(type), message);
  // The line counts as a format without arguments, and is never given to the C library as one.
  std::printf("%s", DropConversions(line).c_str());
  return 0;
}

void* CoreMalloc(std::size_t size) {
  return size == 0 ? nullptr : std::malloc(size);
}

void* CoreZMalloc(std::size_t size) {
  return size == 0 ? nullptr : std::calloc(1, size);
}

void CoreFree(void* pointer) {
  std::free(pointer);
}

const char* TranslateMessageTypeToString(int type) {
  switch (type) {
    case kCoreInfo:
      return "Info";
    case kCoreWarning:
      return "Warning";
    case kCoreError:
      return "Error";
    case kCoreDebug:
      return "Debug";
    default:
      return "Unknown";
  }
}
