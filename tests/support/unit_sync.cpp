#include "support/unit_sync.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

int sync_error = 0;  // 0: none
int good_calls = 0;
int failures_left = 0;  // negative: without end
int calls = 0;

}  // namespace

FailedSync::FailedSync(int error, int good, int times) {
  sync_error = error;
  good_calls = good;
  failures_left = times;
  calls = 0;
}

FailedSync::~FailedSync() {
  sync_error = 0;
}

int SyncCalls() {
  return calls;
}

extern "C" int fsync(int descriptor) {
  ++calls;
  if (sync_error == 0 || calls <= good_calls || failures_left == 0) {
    return static_cast<int>(syscall(SYS_fsync, descriptor));
  }
  --failures_left;
  errno = sync_error;
  return -1;
}
