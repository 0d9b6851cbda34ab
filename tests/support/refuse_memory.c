// Preloaded into the executable, refuses memory:
//
//   REFUSE_BYTES  size of a zeroed buffer that is not to be had
//   REFUSE_FROM   n, from 1: the executable's own n-th call of malloc and all that follow fail; those of
//   libraries are
//                 served
#define _GNU_SOURCE
#include <errno.h>
#include <link.h>
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

void* __libc_calloc(size_t count, size_t size);
void* __libc_malloc(size_t size);

static uintptr_t executable_start, executable_end;
static long refused_from, made;

void* calloc(size_t count, size_t size) {
  const char* refused = getenv("REFUSE_BYTES");
  if (refused && size == 1 && count == strtoul(refused, NULL, 10)) {
    errno = ENOMEM;
    return NULL;
  }
  return __libc_calloc(count, size);
}

void* malloc(size_t size) {
  const uintptr_t caller = (uintptr_t)__builtin_return_address(0);
  if (caller < executable_start || caller >= executable_end) return __libc_malloc(size);
  if (refused_from == 0 || ++made < refused_from) return __libc_malloc(size);
  errno = ENOMEM;
  return NULL;
}

// The executable is the first object.
static int FindExecutable(struct dl_phdr_info* object, size_t size, void* unused) {
  (void)size;
  (void)unused;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)* part = &object->dlpi_phdr[i];
    if (part->p_type != PT_LOAD || !(part->p_flags & PF_X)) continue;
    executable_start = object->dlpi_addr + part->p_vaddr;
    executable_end = executable_start + part->p_memsz;
  }
  return 1;
}

__attribute__((constructor)) static void Begin(void) {
  const char* from = getenv("REFUSE_FROM");
  refused_from = from ? strtol(from, NULL, 10) : 0;
  dl_iterate_phdr(&FindExecutable, NULL);
}
