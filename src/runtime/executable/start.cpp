// Runs the executable's constructors under every C library. From version 2.34 on the C library finds them by
// itself; before, each executable brought a function that ran them and handed it to __libc_start_main. The
// build machine's start object hands none, so the linker's --wrap puts this call in between. With a function
// in hand both kinds of C library call it, and run no constructor themselves.
#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): names that the linker gives
extern "C" {

using MainFunction = int (*)(int, char**, char**);
using Constructor = void (*)(int, char**, char**);
using ExitFunction = void (*)();

// Made by the linker and the compiler's start objects.
extern void _init() __attribute__((visibility("hidden")));
extern const Constructor __init_array_start[] __attribute__((visibility("hidden")));
extern const Constructor __init_array_end[] __attribute__((visibility("hidden")));

int __real___libc_start_main(MainFunction main, int argc, char** argv, Constructor init, ExitFunction fini,
                             ExitFunction loader_fini, void* stack_end);

static void RunConstructors(int argc, char** argv, char** environment) {
  _init();
  const std::ptrdiff_t count = __init_array_end - __init_array_start;
  for (std::ptrdiff_t i = 0; i < count; ++i) __init_array_start[i](argc, argv, environment);
}

// Destructors need nothing of this: they are run by the loader's exit function.
int __wrap___libc_start_main(MainFunction main, int argc, char** argv, Constructor, ExitFunction fini,
                             ExitFunction loader_fini, void* stack_end) {
  return __real___libc_start_main(main, argc, argv, &RunConstructors, fini, loader_fini, stack_end);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
