#include "framework/console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kMirroredPrint = 4096;  // bytes of one print that reach the mirror, terminator included
constexpr int kNoMirror = -1;

int log_mirror = kNoMirror;

}  // namespace

void ConsolePrint(PrintLevel level, const char* format, ...) {
  va_list arguments;
  if (level != kPrintLogOnly) {
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
  }
  if (log_mirror == kNoMirror) return;
  char text[kMirroredPrint] = {};
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  MirrorToLogFile(text);
}

bool OpenLogMirror(const char* path) {
  const int descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC, S_IWUSR);
  if (descriptor < 0) return false;
  log_mirror = descriptor;
  return true;
}

void CloseLogMirror() {
  if (log_mirror == kNoMirror) return;
  close(log_mirror);
  log_mirror = kNoMirror;
}

void MirrorToLogFile(const char* text) {
  if (log_mirror == kNoMirror) return;
  [[maybe_unused]] const ssize_t ignored = write(log_mirror, text, std::strlen(text));
}
