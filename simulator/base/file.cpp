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
#include "recording/disk.h"

namespace lab {
namespace {

std::string Failed(const std::string& path) {
  return path + ": can't be written: " + std::strerror(errno);
}

// As many as the kernel follows itself.
constexpr int kMostLinks = 40;

// With the slash at its end; empty for a name without a folder.
std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// Writes a new file beside `place`, with this mode, and renames it over it. False, with errno, leaves what is
// there, and nothing else.
bool Replace(const std::string& place, const std::string& content, mode_t mode) {
  std::string temporary = place + ".XXXXXX";
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) return false;
  bool good = recording::WriteAll(descriptor, content) && fchmod(descriptor, mode) == 0 &&
              recording::Sync(descriptor);
  int error = errno;
  if (close(descriptor) != 0 && good) {
    error = errno;
    good = false;
  }
  if (good && rename(temporary.c_str(), place.c_str()) != 0) {
    error = errno;
    good = false;
  }
  if (!good) unlink(temporary.c_str());
  errno = error;
  return good && recording::SyncFolderOf(place);
}

bool IsDiskFailure(int error) {
  return error == ENOSPC || error == EDQUOT || error == EFBIG || error == EIO;
}

std::uint32_t WriteInPlace(const char* path, const std::string& content) {
  std::FILE* const file = std::fopen(path, "wbe");
  if (file == nullptr) return errno == ENOENT || errno == ENOTDIR ? kFileNotFound : kFileOpenError;
  const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  const bool closed = std::fclose(file) == 0;
  return written && closed ? kSuccess : kFileOpenError;
}

mode_t ModeOfNewFile() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0664 & ~mask;
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

std::uint32_t WriteFile(const char* path, const std::string& content) {
  struct stat old {};
  struct stat linked {};
  const bool there = stat(path, &old) == 0;
  const std::string place = FollowLinks(path);
  // A link of the kernel's own, such as /dev/stdout, may name what it leads to in a way that leads nowhere.
  const bool same = there && stat(place.c_str(), &linked) == 0 && old.st_dev == linked.st_dev &&
                    old.st_ino == linked.st_ino;
  const bool replaceable = !there || (same && S_ISREG(old.st_mode) && access(path, W_OK) == 0);
  if (replaceable && Replace(place, content, there ? old.st_mode & 07777 : ModeOfNewFile())) return kSuccess;
  // Where the disk has failed, what is there stays whole.
  if (replaceable && IsDiskFailure(errno)) return kFileOpenError;
  // A device can only be written to, and so can a file in a folder that takes no new one.
  return WriteInPlace(path, content);
}

std::string ReplaceFile(const std::string& path, const std::string& content) {
  const std::string place = FollowLinks(path);
  struct stat old {};
  const mode_t mode = stat(place.c_str(), &old) == 0 ? old.st_mode & 07777 : 0644;
  return Replace(place, content, mode) ? "" : Failed(path);
}

}  // namespace lab
