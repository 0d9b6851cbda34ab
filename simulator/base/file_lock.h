// A lock that processes take in turn: flock on a file that exists for nothing else.
#pragma once

#include <chrono>
#include <string>

namespace lab {

class FileLock {
 public:
  FileLock() = default;
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  // Takes the lock of this file, which is made where it is missing and stays. Waits for another holder until
  // `patience` is used up, and takes the time it waited off it. Returns an empty text, or why there is no
  // lock. The lock ends with this object, or with the process.
  std::string Take(const std::string& path, std::chrono::milliseconds& patience);

 private:
  int descriptor_ = -1;
};

}  // namespace lab
