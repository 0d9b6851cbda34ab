#include "runtime/debug_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "runtime/debug_log_writer.h"
#include "runtime/local_time.h"
#include "runtime/locks.h"
#include "runtime/text.h"

namespace {

// Never destroyed: a line can be logged as long as the process runs.
union LoggingLock {
  constexpr LoggingLock() : lock() {}
  ~LoggingLock() {}  // NOLINT(modernize-use-equals-default): that one would be deleted

  CCriticalSection lock;
};
constinit LoggingLock logging;

// Static, so that a long message takes no memory; both are guarded by the logging lock. The buffer is the
// last of the program's data, so that all other variables are close together, on pages that a start needs
// anyway.
[[gnu::section(".lbss")]] constinit char message_buffer[2097152];
constinit char log_file_name[512];

constexpr std::size_t kTimeLimit = 64;

void BuildLogFileName() {
  constexpr char kNoPath[] = "/viplugin";
  // The path that the executable was started by: what dladdr answers for a function of an executable, without
  // the library that dladdr is in before version 2.34 of the C library.
  const char* component = std::strrchr(program_invocation_name, '/');
  if (component == nullptr) component = kNoPath;
  const char* suffix = std::strstr(component, ".so");
  const std::size_t length =
      suffix == nullptr ? std::strlen(component) : static_cast<std::size_t>(suffix - component);
  std::snprintf(log_file_name, sizeof log_file_name, "/var/tmp%.*s.log", static_cast<int>(length), component);
}

// Writes at most `length` characters in one piece, and loses silently what can't be written.
void AppendToLogFile(const char* text, std::size_t length) {
  if (log_file_name[0] == '\0') BuildLogFileName();
  // The folder is everybody's: neither a link nor a pipe that someone put there may lead or hold the program.
  constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  const int file = open(log_file_name, kFlags, 0666);
  if (file < 0) return;
  [[maybe_unused]] const ssize_t written = write(file, text, length);
  close(file);
}

void AppendLine(const char* line) {
  timeval now{};
  gettimeofday(&now, nullptr);
  char time[kTimeLimit];
  FormatLocalTime(now, time, sizeof time);
  char text[kTimeLimit + 1 + kFormatLimit];
  const int length = std::snprintf(text, sizeof text, "%s %s", time, line);
  if (length > 0) AppendToLogFile(text, std::min(static_cast<std::size_t>(length), sizeof text - 1));
}

}  // namespace

constinit std::atomic<std::int32_t> debug_log_detail::mask = 0;

void InitDebugLog() {
  const char* value = std::getenv("ZNFC_DEBUG_LEVEL");
  const auto mask = value == nullptr ? 0 : static_cast<std::int32_t>(std::strtol(value, nullptr, 10));
  debug_log_detail::mask.store(mask, std::memory_order_relaxed);
  if (mask == 0) return;
  // The C library reads the time zone at its first use and takes memory for it; not in a signal handler's
  // line.
  char time[kTimeLimit];
  FormatLocalTime(timeval{}, time, sizeof time);
}

const char* DebugLevelTag(std::int32_t level) {
  if ((level & kDebugTrace) != 0) return "INFORMATION";
  if ((level & kDebugWarning) != 0) return "WARNING    ";
  if ((level & kDebugFailure) != 0) return "DEBUG      ";
  if ((level & kDebugDiagError) != 0) return "DIAG_ERROR ";
  return "";
}

void DebugLog(const char* format, ...) {
  if (DebugMask() == 0 || format == nullptr || format[0] == '\0') return;
  std::va_list arguments;
  va_start(arguments, format);
  DebugLogWriter().Write(nullptr, "", format, arguments);
  va_end(arguments);
}

void DebugLogLevel(std::int32_t level, const char* format, ...) {
  if (!IsDebugLevelOn(level) || format == nullptr || format[0] == '\0') return;
  std::va_list arguments;
  va_start(arguments, format);
  DebugLogWriter().Write(DebugLevelTag(level), "", format, arguments);
  va_end(arguments);
}

void DumpMember(const char* prefix, const char* class_name, const char* member, const void* address,
                std::size_t size, std::uint32_t value) {
  if (DebugMask() == 0) return;
  std::string name;
  FormatString(name, "%s::%s", prefix == nullptr ? "" : prefix, class_name);
  // The line end is part of the message, and the log adds its own: this is deliberate.
  DebugLog("%s.%s(%u) at address[%p - 0x%x].\r\n", name.c_str(), member, static_cast<unsigned>(size), address,
           value);
}

DebugLogWriter::DebugLogWriter() : saved_errno_(errno) {
  // Those that a failing instruction raises can't wait.
  sigset_t signals;
  sigfillset(&signals);
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) sigdelset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, &saved_signals_);
  logging.lock.Lock(kNoTimeLimit);
}

DebugLogWriter::~DebugLogWriter() {
  logging.lock.Unlock();
  errno = saved_errno_;
  pthread_sigmask(SIG_SETMASK, &saved_signals_, nullptr);
}

void DebugLogWriter::Write(const char* tag, const char* context, const char* format, std::va_list arguments) {
  errno = saved_errno_;  // for a %m in the format
  const int length = std::vsnprintf(message_buffer, sizeof message_buffer, format, arguments);
  if (length < 0) message_buffer[0] = '\0';
  WriteMessage(tag, context, message_buffer);
}

// No member is used, but whoever calls this holds the lock.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void DebugLogWriter::WriteMessage(const char* tag, const char* context, const char* message) {
  const auto process = static_cast<unsigned long>(getpid());
  // Cut at FormatString's limit, but in place: a line is also written where no memory can be had. A long
  // message thus loses its line end, which is deliberate.
  char line[kFormatLimit + 1];
  const int length =
      tag == nullptr
          ? std::snprintf(line, sizeof line, "CIM Provider %lu%s: %s\r\n", process, context, message)
          : std::snprintf(line, sizeof line, "CIM Provider %s %lu%s: %s\r\n", tag, process, context, message);
  if (length > 0) AppendLine(line);
}
