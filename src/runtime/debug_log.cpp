#include "runtime/debug_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

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

// A second name would lead to somebody's other file, and the file of another user would show him the log.
bool IsOwnFile(int file) {
  struct stat status;
  return fstat(file, &status) == 0 && status.st_nlink <= 1 && status.st_uid == geteuid();
}

// Writes at most `length` characters in one piece, and loses silently what can't be written.
void AppendToLogFile(const char* text, std::size_t length) {
  if (log_file_name[0] == '\0') BuildLogFileName();
  // The folder is everybody's: neither a link nor a pipe that someone put there may lead or hold the program.
  constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  const int file = open(log_file_name, kFlags, 0664);
  if (file < 0) return;
  if (IsOwnFile(file)) {
    [[maybe_unused]] const ssize_t written = write(file, text, length);
  }
  close(file);
}

bool IsLineEnd(char character) {
  return character == '\r' || character == '\n';
}

// A line that is put together in place, as far as FormatString's limit.
class LogLine {
 public:
  void AddHead(const char* tag, unsigned long process, const char* context) {
    const int length =
        tag == nullptr ? std::snprintf(text_, sizeof text_, "CIM Provider %lu%s: ", process, context)
                       : std::snprintf(text_, sizeof text_, "CIM Provider %s %lu%s: ", tag, process, context);
    length_ = std::min(static_cast<std::size_t>(std::max(length, 0)), kFormatLimit);
  }

  // Adds a message that may hold bytes of devices, files and words. Only printable ASCII goes in as it is,
  // any other byte as \xNN, so that no such text begins a line of its own or commands a terminal. What stays
  // are line ends at the message's end, after which the next line has its own head, and the first `lead`
  // bytes, which are the format's.
  void AddMessage(std::string_view message, std::size_t lead) {
    std::size_t end = message.size();
    while (end > lead && IsLineEnd(message[end - 1])) --end;
    for (std::size_t at = 0; at < message.size() && length_ < kFormatLimit; ++at) {
      if (at < lead || at >= end || (message[at] >= ' ' && message[at] <= '~')) {
        Add(message[at]);
      } else {
        AddEscaped(static_cast<unsigned char>(message[at]));
      }
    }
  }

  // Returns the line with its end, where that still has room.
  const char* Finish() {
    Add('\r');
    Add('\n');
    text_[length_] = '\0';
    return text_;
  }

 private:
  void Add(char character) {
    if (length_ < kFormatLimit) text_[length_++] = character;
  }

  void AddEscaped(unsigned byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    for (const char character : {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]}) Add(character);
  }

  char text_[kFormatLimit + 1];
  std::size_t length_ = 0;
};

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
  // Intended: the line end is part of the message, and the log adds its own.
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
  WriteMessage(tag, context, message_buffer, std::strspn(format, "\r\n"));
}

// No member is used, but whoever calls this holds the lock.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void DebugLogWriter::WriteMessage(const char* tag, const char* context, const char* message,
                                  std::size_t lead) {
  // In place: a line is also written where no memory can be had. Intended: a long message loses its line end.
  LogLine line;
  line.AddHead(tag, static_cast<unsigned long>(getpid()), context);
  line.AddMessage(message, lead);
  AppendLine(line.Finish());
}
