// What calls have changed, kept from run to run.
#pragma once

#include <chrono>
#include <functional>
#include <span>
#include <string>

#include "base/file_lock.h"
#include "device/host.h"
#include "yaml/state_node.h"

namespace lab {

// How long one run waits, in all its changes together, for other runs that hold the lock of its state file.
inline constexpr std::chrono::milliseconds kStatePatience{6000};

// A state file in use. Several runs can share one: a change is written under the lock of `<path>.lock`, onto
// what the file holds by then, and touches only the settings that this run has changed.
class StateFile {
 public:
  explicit StateFile(std::string path, std::chrono::milliseconds patience = kStatePatience)
      : path_(std::move(path)), patience_(patience) {}

  // Applies the state in the file, if it exists, to a linked host. Returns an empty text, or the mistake.
  std::string Load(Host& host);

  // Writes what has changed of this adapter and of the reboot flag since Load or the last saving. The file is
  // replaced as a whole. Returns an empty text, or why it could not be written; a file that is no state file
  // is left as it is.
  std::string Save(const Host& host, const Adapter& adapter);

  // Load, then change(host), then Save for every adapter, all under one lock: nothing comes between.
  std::string Change(Host& host, const std::function<void(Host&)>& change);

 private:
  std::string Lock(FileLock& lock);
  std::string SaveLocked(const Host& host, StateNode states);

  std::string path_;
  std::chrono::milliseconds patience_;
  // What this run has last read or written.
  StateNode adapters_{StateNode::Kind::kMap};  // by state key
  bool reboot_required_ = false;
};

}  // namespace lab
