#pragma once

#include <optional>

#include "runtime/debug_log.h"
#include "runtime/timer.h"

// Names a function in the debug log. The texts must outlive it.
struct FunctionName {
  const char* class_name;
  const char* function;
};

// Which function a TimingScope brackets.
enum class TimedFunction { kPlain, kConstructor, kDestructor };

// Logs "STARTING name" when it is made and "RETURNING name" when it leaves its scope, with the elapsed time
// from 300 milliseconds on. While the debug mask is 0 it reads no clock and formats nothing.
class TimingScope {
 public:
  // `name` is the function's full name, or with the other functions the class's name alone, from which the
  // names "Class::Class()" and "Class::~Class()" are built. It must outlive the scope.
  explicit TimingScope(const char* name, TimedFunction function = TimedFunction::kPlain)
      : name_(name), function_(function) {
    if (DebugMask() != 0) Begin();
  }
  ~TimingScope() {
    if (timer_.has_value()) End();
  }
  TimingScope(const TimingScope&) = delete;
  TimingScope& operator=(const TimingScope&) = delete;

 private:
  void Begin();
  void End();

  const char* name_;
  TimedFunction function_;
  std::optional<KestTimer> timer_;
};

// Logs "Class::Function: Entered" when it is made and "Class::Function: Exiting" when it leaves its scope,
// both at the trace level.
class TraceScope {
 public:
  explicit TraceScope(const FunctionName& function) : function_(function) {
    if (IsDebugLevelOn(kDebugTrace)) Write("Entered");
  }
  ~TraceScope() {
    if (IsDebugLevelOn(kDebugTrace)) Write("Exiting");
  }
  TraceScope(const TraceScope&) = delete;
  TraceScope& operator=(const TraceScope&) = delete;

 private:
  void Write(const char* event) const;

  const FunctionName function_;
};
