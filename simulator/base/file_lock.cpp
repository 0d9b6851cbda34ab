#include "base/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

namespace lab {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Between two tries; short beside the time that a change takes.
constexpr milliseconds kPause{3};

// A lock needs no right to write. The file of another user in a shared folder may be opened but, where the
// kernel protects it, not asked to be made.
int OpenLock(const char* path) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int descriptor = open(path, kFlags);
  return descriptor >= 0 || errno != ENOENT ? descriptor : open(path, kFlags | O_CREAT, 0664);
}

std::string Seconds(milliseconds time) {
  const auto tenths = time.count() / 100;
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " s";
}

}  // namespace

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::string FileLock::Take(const std::string& path, milliseconds& patience) {
  descriptor_ = OpenLock(path.c_str());
  if (descriptor_ < 0) return path + ": can't be made or opened: " + std::strerror(errno);
  const Clock::time_point start = Clock::now();
  const Clock::time_point end = start + patience;
  while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return path + ": can't be locked: " + std::strerror(errno);
    if (Clock::now() >= end) {
      const auto waited = std::chrono::duration_cast<milliseconds>(Clock::now() - start);
      patience = milliseconds(0);
      return path + ": locked by another process, waited " + Seconds(waited);
    }
    std::this_thread::sleep_for(kPause);
  }
  const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
  patience = std::max(left, milliseconds(0));
  return {};
}

}  // namespace lab
