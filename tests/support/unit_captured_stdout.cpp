#include "support/unit_captured_stdout.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

CapturedStdout::CapturedStdout()
    : stream_(stdout), memory_(memfd_create("captured stdout", MFD_CLOEXEC)), real_stdout_(dup(1)) {
  std::fflush(stream_);
  Require(memory_ >= 0 && real_stdout_ >= 0 && dup2(memory_, 1) == 1);
}

CapturedStdout::~CapturedStdout() {
  std::fflush(stream_);
  Require(dup2(real_stdout_, 1) == 1);
  close(real_stdout_);
  close(memory_);
}

std::string CapturedStdout::Text() const {
  std::fflush(stream_);
  std::string text(BytesWritten(), '\0');
  Require(pread(memory_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
  return text;
}

std::size_t CapturedStdout::BytesWritten() const {
  struct stat status = {};
  Require(fstat(memory_, &status) == 0);
  return static_cast<std::size_t>(status.st_size);
}
