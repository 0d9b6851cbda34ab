#include "runtime/out_of_memory.h"

#include <unistd.h>

#include <cstdio>
#include <string_view>

constinit EndStep* EndStep::latest = nullptr;

void EndStep::Plan(Function function, void* subject) {
  Drop();
  function_ = function;
  subject_ = subject;
  earlier_ = latest;
  latest = this;
}

void EndStep::Remove() {
  function_ = nullptr;
  for (EndStep** place = &latest; *place != nullptr; place = &(*place)->earlier_) {
    if (*place != this) continue;
    *place = earlier_;
    return;
  }
}

void EndWithoutMemory() {
  // Each is taken off before it runs: one that asks for memory all the same does not run again.
  while (EndStep* const step = EndStep::latest) {
    const EndStep::Function function = step->function_;
    step->Drop();
    function(step->subject_);
  }
  std::fflush(nullptr);  // all streams: the library output file, too, keeps what was printed
  constexpr std::string_view kMessage = "zfcesxcli: out of memory\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(0);
}
