#include "base/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "base/results.h"

namespace lab {
namespace {

bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string Failed(const std::string& path) {
  return path + ": can't be written: " + std::strerror(errno);
}

// As many as the kernel follows itself.
constexpr int kMostLinks = 40;

// With the slash at its end; empty for a name without a folder.
std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// Makes sure that a new name in the folder outlasts a crash of the machine. A file system that can't sync a
// folder has nothing to wait for.
bool SyncFolder(const std::string& folder) {
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno == EACCES;  // a folder that may be written to but not read
  const bool good = fsync(descriptor) == 0 || errno == EINVAL;
  const int error = errno;
  close(descriptor);
  errno = error;
  return good;
}

}  // namespace

bool IsNoRegularFile(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

FileResult ReadFile(const char* path, std::string& out) {
  std::FILE* file = std::fopen(path, "rbe");
  if (!file) return FileResult::kNotOpened;
  char block[16384];
  std::size_t count = 0;
  while (out.size() <= kLargestFile && (count = std::fread(block, 1, sizeof block, file)) > 0) {
    out.append(block, count);
  }
  const bool good = !std::ferror(file);
  const int error = errno;
  std::fclose(file);
  errno = error;
  return good ? FileResult::kRead : FileResult::kNotRead;
}

std::uint32_t WriteFile(const char* path, const std::string& content) {
  const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0664);
  if (file < 0) return errno == ENOENT || errno == ENOTDIR ? kFileNotFound : kFileOpenError;
  const bool written = WriteAll(file, content);
  const bool closed = close(file) == 0;
  return written && closed ? kSuccess : kFileOpenError;
}

std::string FollowLinks(const std::string& path) {
  std::string place = path;
  for (int links = 0; links < kMostLinks; ++links) {
    char target[PATH_MAX];
    const ssize_t length = readlink(place.c_str(), target, sizeof target);
    if (length < 0 || static_cast<std::size_t>(length) == sizeof target) return place;
    const std::string_view link(target, static_cast<std::size_t>(length));
    place = link.starts_with('/') ? std::string(link) : FolderOf(place) + std::string(link);
  }
  return path;
}

std::string ReplaceFile(const std::string& path, const std::string& content) {
  const std::string place = FollowLinks(path);
  std::string temporary = place + ".XXXXXX";
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) return Failed(path);
  struct stat old {};
  const mode_t mode = stat(place.c_str(), &old) == 0 ? old.st_mode & 07777 : 0644;
  bool good = WriteAll(descriptor, content) && fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0;
  std::string wrong = good ? "" : Failed(path);
  if (close(descriptor) != 0 && good) {
    wrong = Failed(path);
    good = false;
  }
  if (good && rename(temporary.c_str(), place.c_str()) != 0) {
    wrong = Failed(path);
    good = false;
  }
  if (!good) {
    unlink(temporary.c_str());
    return wrong;
  }
  return SyncFolder(FolderOf(place)) ? "" : Failed(path);
}

}  // namespace lab
