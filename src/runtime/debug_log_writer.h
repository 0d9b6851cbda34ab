#pragma once

#include <csignal>
#include <cstdarg>
#include <cstddef>

// The right to write to the debug log, for the log functions: holds the logging lock for its lifetime, and
// gives errno back as it was. Signals wait meanwhile: a handler that logs never meets a half-done line, or a
// lock of the C library that the line's thread holds.
class DebugLogWriter {
 public:
  DebugLogWriter();
  ~DebugLogWriter();
  DebugLogWriter(const DebugLogWriter&) = delete;
  DebugLogWriter& operator=(const DebugLogWriter&) = delete;

  // Appends a line with the message made from `format`. `tag` is the level's tag, null for a line without a
  // place for one; `context` follows the process ID.
  void Write(const char* tag, const char* context, const char* format, std::va_list arguments)
      __attribute__((format(printf, 4, 0)));

  // Appends a line with a message that is complete. Bytes outside printable ASCII are escaped, except line
  // ends at its end and those among its first `lead` bytes.
  void WriteMessage(const char* tag, const char* context, const char* message, std::size_t lead = 0);

 private:
  int saved_errno_;
  sigset_t saved_signals_;
};
