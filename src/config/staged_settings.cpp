#include "config/staged_settings.h"

#include "discovery/port_lookup.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

bool StagedSettings::NeedsReboot() const {
  return IsRebootRequired(node_.class_name);
}

StagedFile StagedSettings::FileOf(const Words& words) const {
  return {StagedPath(node_.file_family, words[0]), node_.value_size};
}

StatusCode StagedSettings::WriteText(Serializer& out, OutputMode mode, const ReportText& text,
                                     RebootField reboot) const {
  WriteReport(out, mode, node_.frame, text, reboot);
  return kSuccess;
}

StatusCode StagedSettings::DisplayError(Serializer& out, StatusCode code, OutputMode mode,
                                        RebootField reboot) const {
  WriteReportError(out, mode, node_.frame, MessageFor(node_.messages, code), reboot);
  return code;
}

StatusCode StagedSettings::DisplayNoMemory(Serializer& out, OutputMode mode) const {
  DebugLogLevel(kDebugFailure, "%s: no memory for the report", node_.class_name);
  return DisplayError(out, kMemoryError, mode);
}

StatusCode StagedSettings::SelectPort(const Words& words) {
  PortSelection selected;
  const StatusCode status = GetPhysicalPortFromPortString(node_.class_name, words, selected);
  fc_ = selected.fc;
  return status;
}

StatusCode StagedSettings::Open(const Words& words) {
  if (const StatusCode status = SelectPort(words); status != kSuccess) return status;
  if (const StatusCode status = Prepare(words); status != kSuccess) return status;
  return ReadDevice();
}

StatusCode StagedSettings::Get(Serializer& out, const Words& words, OutputMode mode) {
  if (const StatusCode status = Open(words); status != kSuccess) return DisplayError(out, status, mode);
  return Display(out, mode, {});
}

// A new file takes every value from the device; one that is there is left as it is, so that what earlier runs
// staged stays. It is not removed again when an option is refused.
StatusCode StagedSettings::Stage(const Words& words) {
  const StagedFile file = FileOf(words);
  if (!file.IsPresent()) {
    if (const StatusCode status = file.Write(AllValues()); status != kSuccess) return status;
  }
  StagedValues changes;
  if (const StatusCode status = CheckOptions(words, file, changes); status != kSuccess) return status;
  if (const StatusCode status = file.Write(changes); status != kSuccess) return status;
  return ReadFile(file);
}

StatusCode StagedSettings::SetFile(Serializer& out, const Words& words, OutputMode mode) {
  StatusCode status = Open(words);
  if (status == kSuccess) status = Stage(words);
  if (status != kSuccess) return DisplayError(out, status, mode);
  return Display(out, mode, {});
}

StatusCode StagedSettings::Set(Serializer& out, const Words& words, OutputMode mode) {
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode, kNoRebootNeeded); };

  if (const StatusCode status = Open(words); status != kSuccess) return fail(status);
  const StagedFile file = FileOf(words);
  // Deliberately the code of a success, which no message table holds: the document says that it failed.
  if (!file.IsPresent()) return fail(kSuccess);
  if (const StatusCode status = ReadFile(file); status != kSuccess) return fail(status);
  if (const StatusCode status = WriteDevice(); status != kSuccess) return fail(status);
  const StatusCode status = Display(out, mode, {RebootField::kBehindMessage, NeedsReboot()});
  file.Remove();
  return status;
}

StatusCode StagedSettings::Run(StagedCommand command, Serializer& out, const Words& words, OutputMode mode) {
  command_ = command;
  switch (command) {
    case StagedCommand::kGet: {
      const TraceScope trace(node_.class_name, "CmdGetCommon");
      return Get(out, words, mode);
    }
    case StagedCommand::kSetFile: {
      const TraceScope trace(node_.class_name, "CmdSetFileCommon");
      return SetFile(out, words, mode);
    }
    case StagedCommand::kSet: {
      const TraceScope trace(node_.class_name, "CmdSetCommon");
      return Set(out, words, mode);
    }
  }
  return kBadMode;
}
