#include "runtime/sync.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string_view>

namespace {

constexpr bool MeansNoSync(int error) {
  return error == EINVAL || error == ENOTSUP || error == ENOSYS || error == EROFS;
}

}  // namespace

bool SyncDescriptor(int descriptor) {
  int result = 0;
  do {
    result = fsync(descriptor);
  } while (result != 0 && errno == EINTR);
  return result == 0 || MeansNoSync(errno);
}

bool SyncPath(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return true;
  const bool synced = SyncDescriptor(descriptor);
  const int error = errno;
  close(descriptor);
  errno = error;
  return synced;
}

bool SyncFolderOf(const char* path) {
  const std::string_view text = path;
  const std::size_t slash = text.rfind('/');
  if (slash == std::string_view::npos) return SyncPath(".");
  char folder[PATH_MAX];
  if (slash + 1 >= sizeof folder) return true;  // no path that could be opened
  folder[text.copy(folder, slash + 1)] = '\0';
  return SyncPath(folder);
}
