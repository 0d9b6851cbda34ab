// Part of a build with planted defects (see README.md here): which defect is on, and which ones a run has
// come by.
//
// ZFC_MUTANT is the number of the defect that is on; without it the program is what its sources say.
// ZFC_MUTANT_SEEN is a file with a byte for each number: a run sets the bytes of the numbers that it comes
// by.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <type_traits>

namespace zfc_mutant {

inline bool ready = false;
inline unsigned planted = 0;
inline unsigned char* seen = nullptr;
inline unsigned long seen_size = 0;

// Allocates nothing: some tests count and refuse allocations.
inline void Start() {
  ready = true;
  if (const char* const number = getenv("ZFC_MUTANT")) {
    for (const char* digit = number; *digit >= '0' && *digit <= '9'; ++digit)
      planted = planted * 10 + static_cast<unsigned>(*digit - '0');
    // A defect may never end, or ask for all memory there is.
    const rlimit seconds = {10, 11};
    setrlimit(RLIMIT_CPU, &seconds);
    const rlimit file_size = {1UL << 28, 1UL << 28};
    setrlimit(RLIMIT_FSIZE, &file_size);
    const rlimit memory = {4UL << 30, 4UL << 30};
    if (planted != 0) setrlimit(RLIMIT_AS, &memory);
  }
  const char* const name = getenv("ZFC_MUTANT_SEEN");
  if (name == nullptr) return;
  const int fd = open(name, O_RDWR | O_CLOEXEC);
  if (fd < 0) return;
  const off_t size =
      lseek(fd, 0, SEEK_END);  // no fstat: the oldest C library that programs are linked for lacks it
  if (size > 0) {
    const auto bytes = static_cast<unsigned long>(size);
    void* const map = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (map != MAP_FAILED) {
      seen = static_cast<unsigned char*>(map);
      seen_size = bytes;
    }
  }
  close(fd);
}

inline bool On(unsigned number) {
  if (!ready) Start();
  if (number < seen_size) seen[number] = 1;
  return number == planted;
}

// In a constexpr function: never on while the compiler evaluates it.
constexpr bool OnAtRunTime(unsigned number) {
  return !std::is_constant_evaluated() && On(number);
}

constexpr void Reach(unsigned number) {
  if (!std::is_constant_evaluated()) (void)On(number);
}

}  // namespace zfc_mutant
