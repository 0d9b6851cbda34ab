#include "support/unit_refused_memory.h"

#include <cstdlib>

namespace {

std::size_t refused_size = 0;  // 0: none

}  // namespace

RefusedMemory::RefusedMemory(std::size_t size) {
  refused_size = size;
}

RefusedMemory::~RefusedMemory() {
  refused_size = 0;
}

// The names that the linker asks for. NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return refused_size != 0 && count * size == refused_size ? nullptr : __real_calloc(count, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
