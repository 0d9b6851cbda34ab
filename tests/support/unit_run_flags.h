// The run flags of one test.
#pragma once

#include "framework/run_flags.h"

// Sets the process-wide flags for its lifetime.
class ScopedRunFlags {
 public:
  explicit ScopedRunFlags(std::uint32_t flags) : before_(gRunFlags.exchange(flags)) {}
  ~ScopedRunFlags() { gRunFlags = before_; }
  ScopedRunFlags(const ScopedRunFlags&) = delete;
  ScopedRunFlags& operator=(const ScopedRunFlags&) = delete;

 private:
  std::uint32_t before_;
};
