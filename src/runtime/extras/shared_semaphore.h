#pragma once

#include <pthread.h>

#include <cstddef>
#include <cstdint>

// A counting semaphore that processes share: the whole content of the file that they map.
struct SharedSemaphore {
  pthread_mutex_t mutex;
  pthread_cond_t condition;
  std::uint32_t count;
  std::int32_t descriptor;  // 0 until the creator is done, then -1: the mapping needs no open file
};
static_assert(sizeof(SharedSemaphore) == 96);
static_assert(offsetof(SharedSemaphore, count) == 88);

// Creates the file `path` with a semaphore of count 1, or opens the one that exists; says so on standard
// output. Returns the mapped semaphore; null when the file cannot be made, opened or mapped.
SharedSemaphore* semaphore_create(const char* path);

// Maps the semaphore in the file `path`. Returns null when there is none, and for a file whose creator did
// not finish it within a second.
SharedSemaphore* semaphore_open(const char* path);

// Raises the count, and wakes a waiter when it was 0. Returns false for null and when the mutex fails.
bool semaphore_post(SharedSemaphore* semaphore);

// Waits while the count is 0, then lowers it. Returns false for null and when the mutex fails.
bool semaphore_wait(SharedSemaphore* semaphore);

// Unmaps the semaphore, and removes the file `name` unless null. Returns false when one of the two fails.
bool semaphore_close(SharedSemaphore* semaphore, const char* name);
