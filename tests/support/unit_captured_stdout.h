// Collects what a piece of code writes to standard output.
#pragma once

#include <cstdio>
#include <string>

// From its making to its end, file descriptor 1 leads to memory. The stream pointer `stdout` is left alone,
// so that a test can watch the program replace it.
class CapturedStdout {
 public:
  CapturedStdout();
  ~CapturedStdout();
  CapturedStdout(const CapturedStdout&) = delete;
  CapturedStdout& operator=(const CapturedStdout&) = delete;

  // Everything written so far.
  std::string Text() const;

  // Number of bytes that have left the stream's buffer. May be asked from another thread.
  std::size_t BytesWritten() const;

 private:
  std::FILE* stream_;
  int memory_;
  int real_stdout_;
};

// What `action` writes to standard output. Results that it computes are best kept in variables and checked
// outside: a failure inside would be reported to the captured stream.
template <class Action>
std::string PrintedBy(Action&& action) {
  const CapturedStdout captured;
  action();
  return captured.Text();
}
