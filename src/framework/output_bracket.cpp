#include "framework/output_bracket.h"

#include <fcntl.h>
#include <unistd.h>

#include "runtime/debug_log.h"

namespace {

// Opens the library output file for appending, as mode "a+" does, but through no symbolic link: its folder is
// writable for everybody. Null when that fails.
std::FILE* OpenLibraryOutput() {
  const int descriptor = open(kLibraryOutputFile, O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (descriptor < 0) return nullptr;
  std::FILE* const stream = fdopen(descriptor, "a+");
  if (stream == nullptr) close(descriptor);
  return stream;
}

ssize_t WriteNowhere(void*, const char*, std::size_t size) {
  return static_cast<ssize_t>(size);
}

}  // namespace

OutputBracket::OutputBracket(const FunctionName& function, const char* step)
    : standard_output_(stdout), library_output_(OpenLibraryOutput()) {
  if (IsOpen()) {
    stdout = library_output_;
    close_.Plan([](void* bracket) { static_cast<OutputBracket*>(bracket)->Close(); }, this);
  } else {
    DebugLogLevel(kDebugFailure, "%s::%s: Failed to open %s file%s", function.class_name, function.function,
                  kLibraryOutputFile, step);
  }
}

void OutputBracket::Close() {
  if (!IsOpen()) return;
  std::fclose(library_output_);
  library_output_ = nullptr;
  stdout = standard_output_;
  close_.Drop();
}

void ReserveStandardOutput() {
  for (const int number : {STDOUT_FILENO, STDERR_FILENO}) {
    const int flags = fcntl(number, F_GETFL);
    // A process that shares it may have asked for writes that fail instead of waiting: a reader that is slow
    // would lose a part of the document.
    if (flags >= 0 && (flags & O_NONBLOCK) != 0) fcntl(number, F_SETFL, flags & ~O_NONBLOCK);
    if (flags >= 0) continue;
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere < 0 || nowhere == number) continue;
    dup2(nowhere, number);  // a closed standard input stays closed
    close(nowhere);
  }
}

void SilenceStandardOutput() {
  std::FILE* nowhere = std::fopen("/dev/null", "w");
  if (nowhere == nullptr) nowhere = fopencookie(nullptr, "w", {nullptr, &WriteNowhere, nullptr, nullptr});
  if (nowhere != nullptr) stdout = nowhere;
}
