// The way of a change from the user to a port, for the nodes with a staged file: `get` shows the device,
// `setFile` stages changes in a file, `set` commits the file to the device.
#pragma once

#include <concepts>
#include <cstddef>

#include "config/staged/staged_file.h"
#include "discovery/port_lookup.h"
#include "framework/command_run.h"
#include "framework/report.h"
#include "framework/report_frame.h"
#include "framework/status.h"

enum class StagedCommand { kGet, kSetFile, kSet };

// The file of a node, and the names of its functions in the debug log.
struct StagedNode {
  const char* family;  // begins the file's name
  const char* create;
  const char* update;
  const char* read;
  const char* display;
  std::size_t value_size = StagedFile::kValueSize;
  bool always_needs_reboot = false;  // without asking the library, and also when nothing has changed
};

// What a node brings: the settings of one port, for the length of one command, made of the port's entry. Each
// step returns kSuccess or the status that ends the command.
template <class Settings>
concept StagedSettings = requires(Settings settings, const Settings& held, CommandRun& run,
                                  const StagedFile& file, StagedValues& values) {
  { Settings::kNode } -> std::convertible_to<StagedNode>;
  // Checks the port, does what the device needs first, and reads it into a zeroed record.
  { settings.Open(run, StagedCommand::kGet) } -> std::same_as<StatusCode>;
  // Adds every key of a new file with the record's value.
  { held.AddAll(values) } -> std::same_as<void>;
  // Checks the options in their order and adds what they change.
  { held.TakeOptions(run, file, values) } -> std::same_as<StatusCode>;
  // Puts the file's values over those of the record.
  { settings.ReadFile(run, file) } -> std::same_as<StatusCode>;
  { settings.WriteDevice(run) } -> std::same_as<StatusCode>;
  // Writes the document of a success, or that of kMemoryError when the report's memory cannot be had.
  { held.Display(run, RebootField{}) } -> std::same_as<StatusCode>;
};

template <StagedSettings Settings>
StagedFile FileOf(const CommandRun& run) {
  return StagedFile(StagedPath(Settings::kNode.family, run.words[0]), Settings::kNode.value_size);
}

// A new file takes every value from the device.
template <StagedSettings Settings>
StatusCode CreateFile(CommandRun& run, const Settings& settings, StagedFile& file) {
  const FunctionScope function(run, Settings::kNode.create);
  StagedValues values;
  settings.AddAll(values);
  return file.Create(run, values);
}

// The changes reach the file only after all options have passed.
template <StagedSettings Settings>
StatusCode UpdateFile(CommandRun& run, const Settings& settings, const StagedFile& file) {
  const FunctionScope function(run, Settings::kNode.update);
  StagedValues changes;
  StatusCode status = settings.TakeOptions(run, file, changes);
  if (status == kSuccess) status = file.CheckReads(run);
  return status == kSuccess ? file.Write(run, changes) : status;
}

template <StagedSettings Settings>
StatusCode ReadFile(CommandRun& run, Settings& settings, const StagedFile& file) {
  const FunctionScope function(run, Settings::kNode.read);
  const StatusCode status = settings.ReadFile(run, file);
  return status == kSuccess ? file.CheckReads(run) : status;
}

template <StagedSettings Settings>
StatusCode Display(CommandRun& run, const Settings& settings, RebootField reboot = {}) {
  const FunctionScope function(run, Settings::kNode.display);
  return settings.Display(run, reboot);
}

template <StagedSettings Settings>
StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  Settings settings(*selected.fc);
  if (const StatusCode status = settings.Open(run, StagedCommand::kGet); status != kSuccess) {
    return run.DisplayError(status);
  }
  return Display(run, settings);
}

// A file that is there is left as it is, so that what earlier runs staged stays. A new one is not removed
// again when an option is refused.
template <StagedSettings Settings>
StatusCode CmdSetFileCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  Settings settings(*selected.fc);
  StatusCode status = settings.Open(run, StagedCommand::kSetFile);
  if (status != kSuccess) return run.DisplayError(status);

  StagedFile file = FileOf<Settings>(run);
  if (!file.IsPresent()) status = CreateFile(run, settings, file);
  if (status == kSuccess) status = UpdateFile(run, settings, file);
  const StatusCode synced = file.Sync(run);  // also a new file of which an option was refused
  if (status == kSuccess) status = synced;
  if (status == kSuccess) status = ReadFile(run, settings, file);
  return status == kSuccess ? Display(run, settings) : run.DisplayError(status);
}

template <StagedSettings Settings>
StatusCode CmdSetCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return run.DisplayError(code, kNoRebootNeeded); };

  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return fail(status);
  Settings settings(*selected.fc);
  StatusCode status = settings.Open(run, StagedCommand::kSet);
  if (status != kSuccess) return fail(status);

  const StagedFile file = FileOf<Settings>(run);
  // Intended: the code of a success, which no message table holds, so that the document reads as a failure.
  if (!file.IsPresent()) return fail(run.Refuse(kSuccess, "nothing is staged"));
  status = ReadFile(run, settings, file);
  if (status == kSuccess) status = settings.WriteDevice(run);
  if (status != kSuccess) return fail(status);
  const bool needs_reboot = Settings::kNode.always_needs_reboot || IsRebootRequired(run);
  status = Display(run, settings, {RebootField::kAfterMessage, needs_reboot});
  file.Remove();
  return status;
}
