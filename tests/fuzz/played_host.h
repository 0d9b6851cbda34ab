// What the targets share whose input the simulated library plays: the files that its variables name, and the
// capture of the host that it plays.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "recording/recording_text.h"
#include "tools/snapshot/capture.h"

inline void Require(bool condition) {
  if (!condition) std::abort();
}

// A file in memory that an environment variable names.
class NamedFile {
 public:
  explicit NamedFile(const char* variable) : variable_(variable), descriptor_(memfd_create(variable, 0)) {
    Require(descriptor_ >= 0);
  }
  void Hold(const std::string& text) const {
    Require(ftruncate(descriptor_, 0) == 0);
    Require(pwrite(descriptor_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
    setenv(variable_, ("/proc/self/fd/" + std::to_string(descriptor_)).c_str(), 1);
  }
  void Forget() const { unsetenv(variable_); }

 private:
  const char* variable_;
  int descriptor_;
};

// A snapshot of what is played, all of it captured.
inline std::string CapturedText() {
  std::vector<std::string> cut;
  return recording::ToText(snapshot::Capture({.with_rdp = true}, cut));
}
