// Files in memory for the fuzz targets of code that opens its files by name, since a run on a disk takes a
// thousand times as long. The C library's functions are replaced for the names that begin with kMemoryFolder,
// and called for all others. For one source of a target: it defines them.
#pragma once

#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "c_library.h"

inline constexpr std::string_view kMemoryFolder = "/in-memory/";
inline constexpr int kFirstMemoryDescriptor = 1 << 20;  // of those of memory_descriptors.h

// A program that leaves a file open, or one file too many, is a finding of its own: see OpenFiles() and
// Count().
class MemoryFiles {
 public:
  using Content = std::shared_ptr<std::string>;  // outlives the name while the file is open

  static MemoryFiles& Get() {
    static MemoryFiles files;
    return files;
  }

  static bool Has(const char* path) { return std::string_view(path).starts_with(kMemoryFolder); }

  Content Find(std::string_view path) const {
    for (const auto& [name, content] : files_) {
      if (name == path) return content;
    }
    return nullptr;
  }

  Content Make(std::string_view path) {
    if (Content content = Find(path); content != nullptr) {
      content->clear();
      return content;
    }
    return files_.emplace_back(std::string(path), std::make_shared<std::string>()).second;
  }

  bool Remove(std::string_view path) {
    return std::erase_if(files_, [path](const auto& file) { return file.first == path; }) > 0;
  }

  bool Rename(std::string_view from, std::string_view to) {
    Content content = Find(from);
    if (content == nullptr) return false;
    Remove(from);
    Remove(to);
    files_.emplace_back(std::string(to), std::move(content));
    return true;
  }

  std::size_t Count() const { return files_.size(); }
  int OpenFiles() const { return open_; }

  std::FILE* Open(Content content);

 private:
  struct Cursor {
    Content content;
    std::size_t at = 0;
  };

  static ssize_t Read(void* cursor, char* buffer, std::size_t size) {
    auto& self = *static_cast<Cursor*>(cursor);
    const std::size_t length = self.content->copy(buffer, size, std::min(self.at, self.content->size()));
    self.at += length;
    return static_cast<ssize_t>(length);
  }
  static ssize_t Write(void* cursor, const char* buffer, std::size_t size) {
    auto& self = *static_cast<Cursor*>(cursor);
    self.content->resize(std::max(self.content->size(), self.at + size));
    self.content->replace(self.at, size, buffer, size);
    self.at += size;
    return static_cast<ssize_t>(size);
  }
  static int Close(void* cursor) {
    delete static_cast<Cursor*>(cursor);
    --Get().open_;
    return 0;
  }

  std::vector<std::pair<std::string, Content>> files_;
  int open_ = 0;
};

inline std::FILE* MemoryFiles::Open(Content content) {
  ++open_;
  std::FILE* const stream = fopencookie(new Cursor{std::move(content)}, "r+",
                                        {.read = &Read, .write = &Write, .seek = nullptr, .close = &Close});
  if (stream != nullptr) __fsetlocking(stream, FSETLOCKING_BYCALLER);  // of one thread
  return stream;
}

inline int MemoryResult(bool done) {
  if (!done) errno = ENOENT;
  return done ? 0 : -1;
}

extern "C" {

std::FILE* fopen(const char* path, const char* mode) {
  if (!MemoryFiles::Has(path)) return CLibrarys("fopen", &fopen)(path, mode);
  MemoryFiles& files = MemoryFiles::Get();
  if (std::strchr(mode, 'x') != nullptr && files.Find(path) != nullptr) {
    errno = EEXIST;
    return nullptr;
  }
  MemoryFiles::Content content = mode[0] == 'w' ? files.Make(path) : files.Find(path);
  if (content != nullptr) return files.Open(std::move(content));
  errno = ENOENT;
  return nullptr;
}

int remove(const char* path) noexcept {
  if (!MemoryFiles::Has(path)) return CLibrarys("remove", &remove)(path);
  return MemoryResult(MemoryFiles::Get().Remove(path));
}

int unlink(const char* path) noexcept {
  if (!MemoryFiles::Has(path)) return CLibrarys("unlink", &unlink)(path);
  return MemoryResult(MemoryFiles::Get().Remove(path));
}

int rename(const char* from, const char* to) noexcept {
  if (!MemoryFiles::Has(from)) return CLibrarys("rename", &rename)(from, to);
  return MemoryResult(MemoryFiles::Get().Rename(from, to));
}

int stat(const char* __restrict path, struct stat* __restrict status) noexcept {
  if (!MemoryFiles::Has(path)) return CLibrarys("stat", &stat)(path, status);
  *status = {};
  status->st_mode = S_IFREG | 0600;
  status->st_nlink = 1;
  return MemoryResult(MemoryFiles::Get().Find(path) != nullptr);
}

int lstat(const char* __restrict path, struct stat* __restrict status) noexcept {
  return MemoryFiles::Has(path) ? stat(path, status) : CLibrarys("lstat", &lstat)(path, status);
}

// A lock for each byte is a quarter of a run, and only one thread reads files.
int getc(std::FILE* stream) {
  return getc_unlocked(stream);
}
int fgetc(std::FILE* stream) {
  return getc_unlocked(stream);
}

// A file in memory that is open as a stream has no descriptor.
int fsync(int descriptor) {
  return descriptor < 0 || descriptor >= kFirstMemoryDescriptor ? 0 : CLibrarys("fsync", &fsync)(descriptor);
}
}
