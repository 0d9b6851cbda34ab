#include "base/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

}  // namespace

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
  std::FILE* const file = std::fopen(path, "wbe");
  if (file == nullptr) return errno == ENOENT || errno == ENOTDIR ? kFileNotFound : kFileOpenError;
  const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  const bool closed = std::fclose(file) == 0;
  return written && closed ? kSuccess : kFileOpenError;
}

std::string ReplaceFile(const std::string& path, const std::string& content) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) return Failed(path);
  struct stat old {};
  const mode_t mode = stat(path.c_str(), &old) == 0 ? old.st_mode & 07777 : 0644;
  bool good = WriteAll(descriptor, content) && fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0;
  std::string wrong = good ? "" : Failed(path);
  close(descriptor);
  if (good && rename(temporary.c_str(), path.c_str()) != 0) {
    wrong = Failed(path);
    good = false;
  }
  if (!good) unlink(temporary.c_str());
  return wrong;
}

}  // namespace lab
