// Functions that a C library of version 2.17 lacks, made of what it has. Only the executable is linked with
// them; the stand-in C library leaves no other way to resolve these names.
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name): the C
// library's names
extern "C" {

// In libc.so.6 since 2.33. On this processor the kernel's record is the C library's.
int stat(const char* path, struct stat* status) noexcept {
  static_assert(sizeof *status == 144);
  return static_cast<int>(syscall(SYS_stat, path, status));
}

int lstat(const char* path, struct stat* status) noexcept {
  return static_cast<int>(syscall(SYS_lstat, path, status));
}

int fstat(int descriptor, struct stat* status) noexcept {
  return static_cast<int>(syscall(SYS_fstat, descriptor, status));
}

// Since 2.30.
pid_t gettid() noexcept {
  return static_cast<pid_t>(syscall(SYS_gettid));
}

// In libc.so.6 since 2.32, in another library before. On Linux sigprocmask, too, sets the calling thread's
// mask.
int pthread_sigmask(int how, const sigset_t* signals, sigset_t* previous) noexcept {
  return sigprocmask(how, signals, previous) == 0 ? 0 : errno;
}

// In libc.so.6 since 2.34, in libpthread.so.0 before, under this name in both. Weak, because libpthread.so.0
// is one more library to map at every start: a process that has not mapped it has one thread only, where to
// try is to lock.
int __pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept __attribute__((weak));

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
  return __pthread_mutex_trylock != nullptr ? __pthread_mutex_trylock(mutex) : pthread_mutex_lock(mutex);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
