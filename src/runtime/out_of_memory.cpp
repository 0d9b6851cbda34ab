#include "runtime/out_of_memory.h"

#include <unistd.h>

#include <cstdio>
#include <string_view>

void EndWithoutMemory() {
  // All streams: inside an output bracket `stdout` is the library output file, and the document is in
  // another.
  std::fflush(nullptr);
  constexpr std::string_view kMessage = "zfcesxcli: out of memory\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(0);
}
