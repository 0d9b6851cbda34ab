#include "tools/common/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "recording/disk.h"

namespace tools {
namespace {

using recording::Sync;
using recording::SyncFolderOf;
using recording::WriteAll;

std::string Failure(const std::string& path) {
  return path + ": can't be written: " + std::strerror(errno);
}

// Also for a link that leads nowhere. An old C library has no lstat() to link against.
bool IsThere(const std::string& path) {
  char target = 0;
  return access(path.c_str(), F_OK) == 0 || readlink(path.c_str(), &target, 1) >= 0;
}

// Puts the finished file in its place: with `force` over whatever is there, else only where nothing is.
bool Place(const std::string& finished, const std::string& path, bool force) {
  if (force) return rename(finished.c_str(), path.c_str()) == 0;
  return link(finished.c_str(), path.c_str()) == 0 && unlink(finished.c_str()) == 0;
}

}  // namespace

std::string WriteOutput(const std::string& path, std::string_view content, bool force) {
  if (path.empty() || path == "-") {
    return WriteAll(STDOUT_FILENO, content) ? "" : Failure("standard output");
  }
  if (IsThere(path) && !force) return path + ": is there already; --force replaces it";
  struct stat there {};
  // A device or a pipe can't be replaced, only written to.
  if (stat(path.c_str(), &there) == 0 && !S_ISREG(there.st_mode)) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) return Failure(path);
    // Put there since: a file is not to be written over from its start.
    const bool changed = fstat(descriptor, &there) == 0 && S_ISREG(there.st_mode);
    if (changed) errno = EEXIST;
    const bool written = !changed && WriteAll(descriptor, content);
    std::string failure = written ? "" : Failure(path);
    close(descriptor);
    return failure;
  }

  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return Failure(path);
  const mode_t mask = umask(0);
  umask(mask);
  bool good = WriteAll(descriptor, content) && fchmod(descriptor, 0664 & ~mask) == 0 && Sync(descriptor);
  std::string failure = good ? "" : Failure(path);
  if (close(descriptor) != 0 && good) {
    failure = Failure(path);
    good = false;
  }
  if (good && !Place(temporary, path, force)) {
    failure = errno == EEXIST ? path + ": is there already; --force replaces it" : Failure(path);
    good = false;
  }
  if (!good) unlink(temporary.c_str());
  if (good && !SyncFolderOf(path)) return Failure(path);
  return failure;
}

}  // namespace tools
