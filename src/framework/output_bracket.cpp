#include "framework/output_bracket.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "runtime/debug_log.h"

namespace {

// A second name would lead to somebody's other file. The owner may be another user: whoever runs the program
// first on a machine makes the file for all.
bool HasOneName(int descriptor) {
  struct stat status;
  return fstat(descriptor, &status) == 0 && status.st_nlink <= 1;
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

// Opens the library output file for appending, as mode "a+" does, but through no link and no pipe: its folder
// is writable for everybody. Null when that fails.
std::FILE* OutputBracket::OpenLibraryOutput() {
  constexpr int kFlags = O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const int descriptor = open(kLibraryOutputFile, kFlags, 0664);
  if (descriptor < 0) return nullptr;
  std::FILE* const stream = HasOneName(descriptor) ? fdopen(descriptor, "a+") : nullptr;
  if (stream == nullptr) {
    close(descriptor);
  } else {
    std::setvbuf(stream, buffer_, _IOFBF, sizeof buffer_);
  }
  return stream;
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
