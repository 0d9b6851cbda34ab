#include "support/unit_stdin_pipe.h"

#include <stdio_ext.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// What an earlier user has typed and nobody has read belongs to no later one.
void ForgetInput() {
  __fpurge(stdin);
  std::clearerr(stdin);
}

}  // namespace

StdinPipe::StdinPipe(std::string_view typed) : real_stdin_(dup(0)), write_end_(-1) {
  int ends[2];
  Require(real_stdin_ >= 0 && pipe(ends) == 0 && dup2(ends[0], 0) == 0);
  close(ends[0]);
  write_end_ = ends[1];
  ForgetInput();
  Type(typed);
}

StdinPipe::~StdinPipe() {
  CloseInput();
  ForgetInput();
  Require(dup2(real_stdin_, 0) == 0);
  close(real_stdin_);
}

void StdinPipe::Type(std::string_view text) const {
  Require(write(write_end_, text.data(), text.size()) == static_cast<ssize_t>(text.size()));
}

void StdinPipe::CloseInput() {
  if (write_end_ < 0) return;
  close(write_end_);
  write_end_ = -1;
}
