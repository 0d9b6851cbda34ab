// What the nodes with a staged file share: `get` shows the device, `setFile` stages changes in a file, `set`
// commits the file to the device.
#pragma once

#include <span>

#include "config/staged_file.h"
#include "config/staged_options.h"
#include "framework/report.h"
#include "framework/status.h"

enum class StagedCommand { kGet, kSetFile, kSet };

// What a node differs in from its like.
struct StagedNode {
  const char* class_name;  // for the debug log
  const char* file_family;
  ReportFrame frame;
  std::span<const StatusMessage> messages;
  std::size_t value_size = 512;  // of the buffer for a file's value
};

// The settings of one port, for the length of one command. Each step returns kSuccess or the status that ends
// the command.
class StagedSettings {
 public:
  explicit StagedSettings(const StagedNode& node) : node_(node) {}
  virtual ~StagedSettings() = default;
  StagedSettings(const StagedSettings&) = delete;
  StagedSettings& operator=(const StagedSettings&) = delete;

  // Runs the command from its words to its document and returns its code.
  StatusCode Run(StagedCommand command, Serializer& out, const Words& words, OutputMode mode);

  // The steps, in their order. Tests take them one by one.

  // Resolves the port in word 0 and refuses a virtual one.
  StatusCode SelectPort(const Words& words);
  // The node's own checks of the port, and what has to be done ahead of the first read.
  virtual StatusCode Prepare(const Words& words) = 0;
  // Reads the device into a zeroed record.
  virtual StatusCode ReadDevice() = 0;
  // Every key of a new file with the value of the record.
  virtual StagedValues AllValues() const = 0;
  // Checks the options and adds what they change to `values`.
  virtual StatusCode CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const = 0;
  // Puts the file's values over those of the record.
  virtual StatusCode ReadFile(const StagedFile& file) = 0;
  virtual StatusCode WriteDevice() = 0;
  // Asked behind a successful write.
  virtual bool NeedsReboot() const;
  // Writes the document of a success. Returns its code, kMemoryError when the report's memory cannot be had.
  virtual StatusCode Display(Serializer& out, OutputMode mode, RebootField reboot) const = 0;

 protected:
  // Writes `text` as the document of a success.
  StatusCode WriteText(Serializer& out, OutputMode mode, const ReportText& text, RebootField reboot) const;

  // The end of a Display whose report has no memory: no reboot is told. Returns kMemoryError.
  StatusCode DisplayNoMemory(Serializer& out, OutputMode mode) const;

  // Writes the document of a failure and returns its code.
  StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode, RebootField reboot = {}) const;

  const FCProtocolEntry& Fc() const { return *fc_; }
  StagedCommand Command() const { return command_; }

  const StagedNode& node_;

 private:
  StatusCode Get(Serializer& out, const Words& words, OutputMode mode);
  StatusCode SetFile(Serializer& out, const Words& words, OutputMode mode);
  StatusCode Set(Serializer& out, const Words& words, OutputMode mode);
  StatusCode Open(const Words& words);
  StatusCode Stage(const Words& words);
  StagedFile FileOf(const Words& words) const;

  StagedCommand command_ = StagedCommand::kGet;
  const FCProtocolEntry* fc_ = nullptr;
};

// The command of a leaf.
template <class Settings, StagedCommand command>
StatusCode StagedCmd(Serializer& out, Words& words, OutputMode mode) {
  Settings settings;
  return settings.Run(command, out, words, mode);
}
