// What the C++ library calls where it would throw. The program is built without exceptions, so nothing could
// catch one: a request that no memory can meet ends as out of memory, and a broken precondition ends in
// abort() with its reason. With these the linker leaves out the C++ library's own functions, and with them
// the stack unwinder, the name demangler and their static objects: a tenth of the file and part of every
// start.
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>

#include "runtime/out_of_memory.h"

namespace {

[[noreturn]] void AbortBecause(const char* reason) {
  for (const char* part : std::array{"zfcesxcli: ", reason, "\n"}) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, part, std::strlen(part));
  }
  std::abort();
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the C++ library's names
namespace std {

void __throw_bad_alloc() {
  EndWithoutMemory();
}
void __throw_bad_array_new_length() {
  EndWithoutMemory();
}
// A text or list longer than any memory.
void __throw_length_error(const char*) {
  EndWithoutMemory();
}
void __throw_logic_error(const char* reason) {
  AbortBecause(reason);
}
void __throw_out_of_range(const char* reason) {
  AbortBecause(reason);
}
// The reason is a format; it names the function, which is enough to find the call.
void __throw_out_of_range_fmt(const char* reason, ...) {
  AbortBecause(reason);
}
void __throw_bad_function_call() {
  AbortBecause("call of an empty function");
}
void __throw_bad_optional_access() {
  AbortBecause("value of an empty optional");
}

}  // namespace std

extern "C" {

[[noreturn]] void __cxa_throw_bad_array_new_length() {
  EndWithoutMemory();
}

[[noreturn]] void __cxa_pure_virtual() {
  AbortBecause("pure virtual function called");
}

// What unwinding would ask of a frame of the C++ library. None has anything to clean up: continue unwinding.
int __gxx_personality_v0() {
  constexpr int kContinueUnwinding = 8;
  return kContinueUnwinding;
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
