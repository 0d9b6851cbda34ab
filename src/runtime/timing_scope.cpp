#include "runtime/timing_scope.h"

#include <cstdint>
#include <string>

#include "runtime/text.h"

namespace {

// From here on the elapsed time is worth a mention, in milliseconds.
constexpr std::int64_t kSlow = 300;

std::string FullName(const char* name, TimedFunction function) {
  std::string full;
  switch (function) {
    case TimedFunction::kPlain:
      FormatString(full, "%s", name);
      break;
    case TimedFunction::kConstructor:
      FormatString(full, "%s::%s()", name, name);
      break;
    case TimedFunction::kDestructor:
      FormatString(full, "%s::~%s()", name, name);
      break;
  }
  return full;
}

}  // namespace

void TimingScope::Begin() {
  timer_.emplace().Start();
  DebugLog("STARTING %s", FullName(name_, function_).c_str());
}

void TimingScope::End() {
  timer_->Stop();
  const std::string name = FullName(name_, function_);
  if (timer_->ElapsedMilliseconds() < kSlow) {
    DebugLog("RETURNING %s", name.c_str());
  } else {
    DebugLog("RETURNING %s ... elapsed %s", name.c_str(), timer_->ElapsedText().c_str());
  }
}

void TraceScope::Write(const char* event) const {
  DebugLogLevel(kDebugTrace, "%s::%s: %s", function_.class_name, function_.function, event);
}
