#include "tools/lab/memory.h"

#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include "tools/common/arguments.h"

namespace zfc_lab {
namespace {

// Objects outside functions take memory before main() can catch what they throw. This runs ahead of their
// constructors; main() takes it back.
[[gnu::constructor(101)]] void EndInsteadOfThrowing() {
  std::set_new_handler(&EndWithoutMemory);
  // Without memory for an exception there is none to catch.
  std::set_terminate([] {
    if (std::current_exception() == nullptr) EndWithoutMemory();
    std::abort();
  });
}

}  // namespace

void EndWithoutMemory() {
  constexpr std::string_view kMessage = "zfc-lab: out of memory\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(tools::kMistake);
}

void SetVariable(const char* name, const std::string& value) {
  if (setenv(name, value.c_str(), 1) != 0) EndWithoutMemory();
}

}  // namespace zfc_lab
