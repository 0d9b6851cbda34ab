// Preloaded into a program: plays somebody who changes a folder while the program works there. Just before
// the program's n-th call that names one path, a link to a victim's file is put in the path's place.
//
//   SWAP_AT     n, from 1
//   SWAP_PATH   the path, as the program names it
//   SWAP_WITH   the victim's file
//   SWAP_HOW    symlink or link
//   SWAP_DONE   file that is made when the link has been put there
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static void* Real(const char* name) {
  void* found = dlsym(RTLD_NEXT, name);
  if (!found) abort();
  return found;
}

// System calls alone: the C library's functions of these names are the ones below.
static void Swap(const char* path) {
  const char* victim = getenv("SWAP_WITH");
  const char* how = getenv("SWAP_HOW");
  const char* done = getenv("SWAP_DONE");
  if (!victim || !how || !done) abort();
  syscall(SYS_unlinkat, AT_FDCWD, path, 0);
  long failed = strcmp(how, "link") == 0 ? syscall(SYS_linkat, AT_FDCWD, victim, AT_FDCWD, path, 0)
                                         : syscall(SYS_symlinkat, victim, AT_FDCWD, path);
  long mark = syscall(SYS_openat, AT_FDCWD, done, O_WRONLY | O_CREAT, 0644);
  if (failed || mark < 0) abort();
  syscall(SYS_close, mark);
}

static void Step(const char* path) {
  static long made = 0;
  const char* at = getenv("SWAP_AT");
  const char* watched = getenv("SWAP_PATH");
  if (!at || !watched || !path || strcmp(path, watched) != 0) return;
  if (++made == strtol(at, NULL, 10)) Swap(path);
}

#define FORWARD(result, name, parameters, watched, ...) \
  result name parameters {                              \
    result(*real) parameters;                           \
    *(void**)&real = Real(#name);                       \
    Step(watched);                                      \
    return real(__VA_ARGS__);                           \
  }

FORWARD(FILE*, fopen, (const char* path, const char* mode), path, path, mode)
FORWARD(int, remove, (const char* path), path, path)
FORWARD(int, unlink, (const char* path), path, path)
FORWARD(int, access, (const char* path, int mode), path, path, mode)
FORWARD(int, stat, (const char* path, struct stat* status), path, path, status)
FORWARD(int, lstat, (const char* path, struct stat* status), path, path, status)
FORWARD(ssize_t, readlink, (const char* path, char* text, size_t size), path, path, text, size)

// The path is what these two give to a file.
FORWARD(int, rename, (const char* from, const char* to), to, from, to)
FORWARD(int, link, (const char* from, const char* to), to, from, to)

int open(const char* path, int flags, ...) {
  int (*real)(const char*, int, ...);
  *(void**)&real = Real("open");
  Step(path);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return real(path, flags, mode);
}

// The program's own stat() and lstat() are system calls.
long syscall(long number, ...) {
  long (*real)(long, ...);
  *(void**)&real = Real("syscall");
  va_list arguments;
  va_start(arguments, number);
  long given[6];
  for (int i = 0; i < 6; ++i) given[i] = va_arg(arguments, long);
  va_end(arguments);
  if (number == SYS_stat || number == SYS_lstat) Step((const char*)given[0]);
  return real(number, given[0], given[1], given[2], given[3], given[4], given[5]);
}
