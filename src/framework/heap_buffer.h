// Blocks of the C library's heap, released with their owner: those that the device library allocates, and
// buffers whose failed allocation a command reports.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};

template <class T>
using HeapBuffer = std::unique_ptr<T, FreeBlock>;

// `count` zeroed bytes; null without memory.
inline HeapBuffer<unsigned char[]> ZeroedBytes(std::size_t count) {
  return HeapBuffer<unsigned char[]>(static_cast<unsigned char*>(std::calloc(count, 1)));
}
