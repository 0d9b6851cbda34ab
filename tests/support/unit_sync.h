// Disks that fail.
#pragma once

// As long as it lives, fsync() fails with this error after its first `good` calls, or from the first on; with
// `times`, only so many times. The test programs define fsync() themselves.
class FailedSync {
 public:
  explicit FailedSync(int error, int good = 0, int times = -1);
  ~FailedSync();
  FailedSync(const FailedSync&) = delete;
  FailedSync& operator=(const FailedSync&) = delete;
};

// How often fsync() has been called since the last FailedSync was made.
int SyncCalls();
