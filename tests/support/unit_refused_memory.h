// Reports without memory for their text.
#pragma once

#include <cstddef>

// As long as it lives, no block of exactly `size` bytes can be had from calloc. The link of the test programs
// turns calloc into a function of ours.
class RefusedMemory {
 public:
  explicit RefusedMemory(std::size_t size);
  ~RefusedMemory();
  RefusedMemory(const RefusedMemory&) = delete;
  RefusedMemory& operator=(const RefusedMemory&) = delete;
};
