// The executable's operator new, which ends the program instead of throwing: the program has no exceptions,
// and the C++ library's own operator would bring its stack unwinder along.
#include <cstdlib>
#include <new>

#include "runtime/out_of_memory.h"

namespace {

// A size of 0 still has to give an address of its own.
void* Allocate(std::size_t size) {
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrEnd(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) EndWithoutMemory();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrEnd(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrEnd(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
