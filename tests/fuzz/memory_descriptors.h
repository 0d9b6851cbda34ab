// Beside memory_files.h: the files of kMemoryFolder for code that opens them by descriptors, replaces them
// and locks them. For one source of a target: it defines the C library's functions.
#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <map>
#include <string_view>
#include <utility>

#include "c_library.h"
#include "memory_files.h"

// All descriptors of files in memory that are open. Only one process has them, so a lock is always free.
class MemoryDescriptors {
 public:
  static MemoryDescriptors& Get() {
    static MemoryDescriptors descriptors;
    return descriptors;
  }

  static bool Has(int descriptor) { return descriptor >= kFirstMemoryDescriptor; }

  int Open(MemoryFiles::Content content) {
    int descriptor = kFirstMemoryDescriptor;
    while (open_.contains(descriptor)) ++descriptor;
    open_.emplace(descriptor, std::move(content));
    return descriptor;
  }

  // What is open under this descriptor; a program that uses one that is not is wrong.
  const MemoryFiles::Content& Content(int descriptor) const {
    const auto found = open_.find(descriptor);
    if (found == open_.end()) std::abort();
    return found->second;
  }

  void Close(int descriptor) {
    if (open_.erase(descriptor) == 0) std::abort();
  }

  std::size_t Count() const { return open_.size(); }

 private:
  std::map<int, MemoryFiles::Content> open_;
};

extern "C" {

int open(const char* path, int flags, ...) {
  if (!MemoryFiles::Has(path)) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return CLibrarys("open", &open)(path, flags, mode);
  }
  if ((flags & O_DIRECTORY) != 0) return MemoryDescriptors::Get().Open(nullptr);
  MemoryFiles::Content content = MemoryFiles::Get().Find(path);
  if (content == nullptr && (flags & O_CREAT) != 0) content = MemoryFiles::Get().Make(path);
  if (content == nullptr) return MemoryResult(false);
  return MemoryDescriptors::Get().Open(std::move(content));
}

int mkostemp(char* path, int flags) {
  if (!MemoryFiles::Has(path)) return CLibrarys("mkostemp", &mkostemp)(path, flags);
  const std::string_view name = path;
  for (std::size_t at = name.size() - 6; at < name.size(); ++at) path[at] = 'a';
  if (MemoryFiles::Get().Find(path) != nullptr) std::abort();  // one that is left
  return MemoryDescriptors::Get().Open(MemoryFiles::Get().Make(path));
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  static auto* const the_librarys = CLibrarys("write", &write);
  if (!MemoryDescriptors::Has(descriptor)) return the_librarys(descriptor, bytes, size);
  MemoryDescriptors::Get().Content(descriptor)->append(static_cast<const char*>(bytes), size);
  return static_cast<ssize_t>(size);
}

int close(int descriptor) {
  static auto* const the_librarys = CLibrarys("close", &close);
  if (!MemoryDescriptors::Has(descriptor)) return the_librarys(descriptor);
  MemoryDescriptors::Get().Close(descriptor);
  return 0;
}

int flock(int descriptor, int operation) noexcept {
  if (!MemoryDescriptors::Has(descriptor)) return CLibrarys("flock", &flock)(descriptor, operation);
  MemoryDescriptors::Get().Content(descriptor);
  return 0;
}

int fchmod(int descriptor, mode_t mode) noexcept {
  if (!MemoryDescriptors::Has(descriptor)) return CLibrarys("fchmod", &fchmod)(descriptor, mode);
  MemoryDescriptors::Get().Content(descriptor);
  return 0;
}

ssize_t readlink(const char* __restrict path, char* __restrict target, std::size_t size) noexcept {
  if (!MemoryFiles::Has(path)) return CLibrarys("readlink", &readlink)(path, target, size);
  errno = EINVAL;  // none is a link
  return -1;
}
}
