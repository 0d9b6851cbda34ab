#include "framework/command_run.h"

#include <cstdarg>
#include <string>

#include "framework/command_node.h"
#include "framework/report.h"
#include "runtime/text.h"

namespace {

[[gnu::format(printf, 3, 0)]] void LogLine(std::int32_t level, const FunctionName& function,
                                           const char* format, std::va_list arguments) {
  std::string message;
  FormatStringV(message, format, arguments);
  DebugLogLevel(level, "%s::%s: %s", function.class_name, function.function, message.c_str());
}

}  // namespace

CommandRun::CommandRun(const NodeClass& node_class, const char* function, Serializer& output,
                       Words& arguments, OutputMode output_mode)
    : out(output),
      words(arguments),
      mode(output_mode),
      class_(node_class),
      function_{node_class.name, function} {}

void CommandRun::Trace(const char* format, ...) const {
  if (!IsDebugLevelOn(kDebugTrace)) return;
  std::va_list arguments;
  va_start(arguments, format);
  LogLine(kDebugTrace, function_, format, arguments);
  va_end(arguments);
}

void CommandRun::LogFailure(const char* format, ...) const {
  if (!IsDebugLevelOn(kDebugFailure)) return;
  std::va_list arguments;
  va_start(arguments, format);
  LogLine(kDebugFailure, function_, format, arguments);
  va_end(arguments);
}

StatusCode CommandRun::Refuse(StatusCode status, const char* format, ...) const {
  if (!IsDebugLevelOn(kDebugFailure)) return status;
  std::va_list arguments;
  va_start(arguments, format);
  LogLine(kDebugFailure, function_, format, arguments);
  va_end(arguments);
  return status;
}

StatusCode CommandRun::DisplayError(StatusCode status, RebootField reboot) {
  const FunctionScope function(*this, __func__);
  WriteReportError(*this, class_.frame, MessageFor(status), reboot);
  return status;
}

StatusCode CommandRun::DisplayNoMemory(RebootField reboot) {
  return DisplayError(Refuse(kMemoryError, "Output memory alloc failed"), reboot);
}

StatusCode CommandRun::DisplayReport(const ReportText& text, RebootField reboot) {
  WriteReport(*this, class_.frame, text, reboot);
  return kSuccess;
}

const char* CommandRun::MessageFor(StatusCode status) const {
  return ::MessageFor(class_.messages, status);
}
