// One run of a command: what it was given, where its document goes, and the names that head its lines in the
// debug log.
#pragma once

#include <cstddef>

#include "framework/report_frame.h"
#include "framework/serializer.h"
#include "framework/status.h"
#include "framework/words.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

struct NodeClass;
class ReportText;

class CommandRun {
 public:
  // `node_class`, `output` and `arguments` must outlive the run. `function` is the command's name in the
  // debug log.
  CommandRun(const NodeClass& node_class, const char* function, Serializer& output, Words& arguments,
             OutputMode output_mode);
  CommandRun(const CommandRun&) = delete;
  CommandRun& operator=(const CommandRun&) = delete;

  Serializer& out;  // writes the document
  Words& words;     // the arguments, from word 0 on
  const OutputMode mode;

  // The class and the function at work.
  const FunctionName& Function() const { return function_; }

  // Log "Class::Function: message": a step at the trace level, the reason of a failure at the failure level.
  // With the level off nothing is formatted.
  [[gnu::format(printf, 2, 3)]] void Trace(const char* format, ...) const;
  [[gnu::format(printf, 2, 3)]] void LogFailure(const char* format, ...) const;

  // Logs why the command fails and returns `status`.
  [[gnu::format(printf, 3, 4)]] StatusCode Refuse(StatusCode status, const char* format, ...) const;

  // Writes the document of a failure: the class's frame with the class's message for `status`, and an empty
  // list in place of the text. Returns `status`.
  StatusCode DisplayError(StatusCode status, RebootField reboot = {});

  // DisplayError for a report whose buffer cannot be allocated, with a line in the log. Returns kMemoryError.
  StatusCode DisplayNoMemory(RebootField reboot = {});

  // Writes the document of a success: the text in the class's frame. Returns kSuccess.
  StatusCode DisplayReport(const ReportText& text, RebootField reboot = {});

  // The class's message for `status`, "Failed, Unknown" when it has none.
  const char* MessageFor(StatusCode status) const;

 private:
  friend class FunctionScope;

  const NodeClass& class_;
  FunctionName function_;
};

// Makes a function the one at work for its scope, and logs its entry and its exit at the trace level. A
// helper without such a scope logs under its caller's name.
class FunctionScope {
 public:
  FunctionScope(CommandRun& run, const char* function)
      : FunctionScope(run, {run.function_.class_name, function}) {}
  // For a function of another class than the command's.
  FunctionScope(CommandRun& run, const FunctionName& function)
      : run_(run), caller_(run.function_), trace_(function) {
    run.function_ = function;
  }
  ~FunctionScope() { run_.function_ = caller_; }
  FunctionScope(const FunctionScope&) = delete;
  FunctionScope& operator=(const FunctionScope&) = delete;

 private:
  CommandRun& run_;
  const FunctionName caller_;
  const TraceScope trace_;
};
