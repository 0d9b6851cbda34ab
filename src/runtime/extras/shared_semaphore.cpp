#include "runtime/extras/shared_semaphore.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>

namespace {

constexpr std::int32_t kReady = -1;

SharedSemaphore* Map(int file) {
  void* memory = mmap(nullptr, sizeof(SharedSemaphore), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  return memory == MAP_FAILED ? nullptr : static_cast<SharedSemaphore*>(memory);
}

void Initialise(SharedSemaphore& semaphore) {
  pthread_mutexattr_t mutex_attributes;
  pthread_mutexattr_init(&mutex_attributes);
  pthread_mutexattr_setpshared(&mutex_attributes, PTHREAD_PROCESS_SHARED);
  pthread_mutex_init(&semaphore.mutex, &mutex_attributes);
  pthread_mutexattr_destroy(&mutex_attributes);
  pthread_condattr_t condition_attributes;
  pthread_condattr_init(&condition_attributes);
  pthread_condattr_setpshared(&condition_attributes, PTHREAD_PROCESS_SHARED);
  pthread_cond_init(&semaphore.condition, &condition_attributes);
  pthread_condattr_destroy(&condition_attributes);
  semaphore.count = 1;
  std::atomic_ref(semaphore.descriptor).store(kReady, std::memory_order_release);
}

template <typename Condition>
bool Poll(Condition condition) {
  constexpr timespec kInterval{0, 1000000};
  for (int milliseconds = 0; milliseconds < 1000; ++milliseconds) {
    if (condition()) return true;
    nanosleep(&kInterval, nullptr);
  }
  return condition();
}

// The creator sizes the file first and fills it after: reading a mapping of a shorter file would end the
// process.
SharedSemaphore* MapWhenReady(int file) {
  const auto is_sized = [file] {
    struct stat status {};
    return fstat(file, &status) == 0 && status.st_size >= static_cast<off_t>(sizeof(SharedSemaphore));
  };
  if (!Poll(is_sized)) return nullptr;
  SharedSemaphore* semaphore = Map(file);
  if (semaphore == nullptr) return nullptr;
  std::atomic_ref descriptor(semaphore->descriptor);
  if (Poll([&] { return descriptor.load(std::memory_order_acquire) == kReady; })) return semaphore;
  munmap(semaphore, sizeof *semaphore);
  return nullptr;
}

SharedSemaphore* CreateIn(int file) {
  if (ftruncate(file, sizeof(SharedSemaphore)) != 0) return nullptr;
  SharedSemaphore* semaphore = Map(file);
  if (semaphore != nullptr) Initialise(*semaphore);
  return semaphore;
}

SharedSemaphore* CreateOrOpen(const char* path) {
  const int file = open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0 && errno == EEXIST) {
    std::printf("semaphore_create: semaphore exists, getting semaphore!\n");
    return semaphore_open(path);
  }
  if (file < 0) return nullptr;
  SharedSemaphore* semaphore = CreateIn(file);
  close(file);
  if (semaphore == nullptr) {
    unlink(path);
    return nullptr;
  }
  std::printf("semaphore_create: semaphore created!\n");
  return semaphore;
}

}  // namespace

SharedSemaphore* semaphore_create(const char* path) {
  std::printf("semaphore_create In\n");
  SharedSemaphore* semaphore = CreateOrOpen(path);
  std::printf("semaphore_create Out\n");
  return semaphore;
}

SharedSemaphore* semaphore_open(const char* path) {
  const int file = open(path, O_RDWR | O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) return nullptr;
  SharedSemaphore* semaphore = MapWhenReady(file);
  close(file);
  return semaphore;
}

bool semaphore_post(SharedSemaphore* semaphore) {
  if (semaphore == nullptr || pthread_mutex_lock(&semaphore->mutex) != 0) return false;
  if (semaphore->count++ == 0) pthread_cond_signal(&semaphore->condition);
  pthread_mutex_unlock(&semaphore->mutex);
  return true;
}

bool semaphore_wait(SharedSemaphore* semaphore) {
  if (semaphore == nullptr || pthread_mutex_lock(&semaphore->mutex) != 0) return false;
  while (semaphore->count == 0) pthread_cond_wait(&semaphore->condition, &semaphore->mutex);
  --semaphore->count;
  pthread_mutex_unlock(&semaphore->mutex);
  return true;
}

bool semaphore_close(SharedSemaphore* semaphore, const char* name) {
  const bool unmapped = semaphore != nullptr && munmap(semaphore, sizeof *semaphore) == 0;
  const bool removed = name == nullptr || unlink(name) == 0;
  return unmapped && removed;
}
