// Preloaded into a program: a server that runs the program again and again, each time in a fork made right
// before its main(), after the loader and the constructors. With sanitizers these take most of a run.
// START_SERVER is the descriptor of a socket; run_server.h has what goes over it.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>

#include "private_mounts.h"
#include "run_server.h"

typedef int StartMain(RunMain*, int, char**, void (*)(int, char**, char**), void (*)(void), void (*)(void),
                      void*);

static RunMain* program;

// In place of the program's main().
static int Serve(int argc, char** argv, char** variables) {
  (void)argc, (void)argv, (void)variables;
  const char* socket = getenv("START_SERVER");
  if (!socket) Die("no", "START_SERVER");
  return ServeRuns(atoi(socket), program);
}

__attribute__((visibility("default"))) int __libc_start_main(RunMain* main, int argc, char** argv,
                                                             void (*init)(int, char**, char**),
                                                             void (*fini)(void), void (*loader_fini)(void),
                                                             void* stack_end) {
  StartMain* real;
  *(void**)&real = dlsym(RTLD_NEXT, "__libc_start_main");
  if (!real) Die("cannot find", "__libc_start_main");
  program = main;
  return real(&Serve, argc, argv, init, fini, loader_fini, stack_end);
}
