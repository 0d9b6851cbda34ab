// One call of the device library, from its bracket to its status.
#pragma once

#include <span>

#include "framework/command_run.h"
#include "framework/device_library/calls.h"
#include "framework/output_bracket.h"
#include "framework/status.h"

// The status of a call's result: kSuccess, kMaintenanceMode, or `failure` for any other failure. Logs a
// failure with `step`, which names what the call does ("Get HBA params").
StatusCode StatusOfCall(const CommandRun& run, const char* step, LibraryStatus result, StatusCode failure);

// The same for a command that translates failures by a table; `failure` is for those that the table lacks.
StatusCode StatusOfCall(const CommandRun& run, const char* step, LibraryStatus result,
                        std::span<const LibraryAnswer> answers, StatusCode failure);

// For a read whose failure leaves the command going: logs the failure and clears what the call has filled, so
// that the report shows it as absent.
template <class Buffer>
void ClearUnlessRead(const CommandRun& run, const char* step, LibraryStatus result, Buffer& buffer) {
  if (StatusOfCall(run, step, result, kReadFailed) != kSuccess) buffer = {};
}

// Makes `call` in an output bracket of its own. False, without the call, when the bracket cannot be opened.
template <class Call>
bool CallInBracket(const CommandRun& run, Call call) {
  const OutputBracket bracket(run);
  if (bracket.IsOpen()) call();
  return bracket.IsOpen();
}

// The same for a call that answers a status: returns what StatusOfCall makes of it; kFileNotFound when the
// bracket cannot be opened.
template <class Call>
StatusCode CallLibrary(const CommandRun& run, const char* step, std::span<const LibraryAnswer> answers,
                       StatusCode failure, Call call) {
  LibraryStatus result = kLibrarySuccess;
  if (!CallInBracket(run, [&] { result = call(); })) return kFileNotFound;
  return StatusOfCall(run, step, result, answers, failure);
}
template <class Call>
StatusCode CallLibrary(const CommandRun& run, const char* step, StatusCode failure, Call call) {
  return CallLibrary(run, step, {}, failure, call);
}

// The same for a call whose every failure has one status, also in maintenance mode.
template <class Call>
StatusCode CallLibraryWithOneStatus(const CommandRun& run, const char* step, StatusCode failure, Call call) {
  const StatusCode status = CallLibrary(run, step, failure, call);
  return status == kMaintenanceMode ? failure : status;
}
