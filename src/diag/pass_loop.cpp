#include "diag/pass_loop.h"

#include <unistd.h>

#include <cstdio>

PassProgress::PassProgress(OutputMode mode, std::uint32_t passes)
    : visible_(mode == OUTPUT_CLI && isatty(STDERR_FILENO) != 0), passes_(passes) {}

PassProgress::~PassProgress() {
  if (width_ > 0) dprintf(STDERR_FILENO, "\r%*s\r", width_, "");
}

void PassProgress::Show(std::uint32_t pass) {
  if (!visible_) return;
  // The line never gets shorter, so that it overwrites the one before it. One character for the carriage
  // return.
  width_ = dprintf(STDERR_FILENO, "\rpass %u of %u", pass, passes_) - 1;
}
