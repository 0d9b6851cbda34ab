// The file in which the changes to one port's settings wait, from the `setFile` that stages them to the `set`
// that commits them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "config/staged/file_ops.h"
#include "framework/command_run.h"
#include "framework/status.h"

// Keys with the values that a file is to hold, in the order in which they are written: byte order.
using StagedValues = std::map<std::string, std::string>;

// The path of the changes of one family for one port; `port` is the port identifier as the user typed it.
std::string StagedPath(const char* family, const std::string& port);

class StagedFile {
 public:
  static constexpr std::size_t kValueSize = 512;  // of the buffer for a value, terminator included

  explicit StagedFile(std::string path, std::size_t value_size = kValueSize)
      : path_(std::move(path)), value_size_(value_size) {}

  bool IsPresent() const;

  // Stores the value of a key, as much of it as the buffer holds; false, and the value as it was, when the
  // file does not have it. Each look-up reads the file from its start.
  bool Find(const std::string& key, std::string& value) const;
  bool FindNumber(const std::string& key, std::uint32_t& number) const;

  // Writes the values of a file that is not there yet. This and what follows it is on the disk only after
  // Sync: waiting for the disk once per key would take seconds, and nobody relies on the file before.
  StatusCode Create(const CommandRun& run, const StagedValues& values);

  // kFileNotFound, with a line in the log, when a look-up so far could not read the file: its answer, that
  // the key is not there, then means nothing, and nothing may be done on it.
  StatusCode CheckReads(const CommandRun& run) const;

  // Writes the values, each with a pass of its own over the file. kFileNotFound, with a line in the log, at
  // the first failure; what was written before it stays.
  StatusCode Write(const CommandRun& run, const StagedValues& values) const;

  // Waits until the file is on the disk. kFileNotFound, with a line in the log, when the disk fails.
  StatusCode Sync(const CommandRun& run) const;

  // A failure is only logged.
  void Remove() const;

 private:
  std::string path_;
  std::size_t value_size_;
  FileOps::Reach reach_ = FileOps::kDisk;
  mutable bool is_unreadable_ = false;
};
