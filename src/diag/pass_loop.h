// How a diagnostic calls the library pass by pass, and shows its progress.
#pragma once

#include <cstdint>

#include "framework/command_run.h"
#include "framework/library_call.h"
#include "framework/serializer.h"
#include "framework/status.h"

// Shows a person at a terminal which pass runs: one line "pass 3 of 100" on standard error, removed at the
// end. Silent where standard error is no terminal, and in XML.
class PassProgress {
 public:
  PassProgress(OutputMode mode, std::uint32_t passes);
  ~PassProgress();
  PassProgress(const PassProgress&) = delete;
  PassProgress& operator=(const PassProgress&) = delete;

  // Shows the pass that begins now, counted from 1.
  void Show(std::uint32_t pass);

 private:
  bool visible_;
  std::uint32_t passes_;
  int width_ = 0;  // of the line at the terminal, in characters
};

// Runs up to `passes` passes: `call` makes the library call of each, in a bracket of its own, and `go_on`
// judges it after the bracket and returns whether the next pass runs. kFileNotFound when a bracket cannot be
// opened, which ends the passes.
template <class Call, class GoOn>
StatusCode RunPasses(const CommandRun& run, std::uint32_t passes, Call call, GoOn go_on) {
  PassProgress progress(run.mode, passes);
  for (std::uint32_t pass = 1; pass <= passes; ++pass) {
    progress.Show(pass);
    if (!CallInBracket(run, call)) return kFileNotFound;
    if (!go_on()) break;
  }
  return kSuccess;
}
