// Preloaded into the executable: there is no memory for a zeroed buffer of exactly REFUSE_BYTES bytes.
#define _GNU_SOURCE
#include <errno.h>
#include <stddef.h>
#include <stdlib.h>

void* __libc_calloc(size_t count, size_t size);

void* calloc(size_t count, size_t size) {
  const char* refused = getenv("REFUSE_BYTES");
  if (refused && size == 1 && count == strtoul(refused, NULL, 10)) {
    errno = ENOMEM;
    return NULL;
  }
  return __libc_calloc(count, size);
}
