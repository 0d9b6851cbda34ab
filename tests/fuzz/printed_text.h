// Catches in memory what a target's code prints on the stream `stdout`.
#pragma once

#include <stdio_ext.h>

#include <cstdio>
#include <cstdlib>
#include <string>

// One stream for the whole process. The program's own is put back at the end of each catch, since the
// fuzzer's libraries may print too.
class PrintedText {
 public:
  template <class Action>
  static std::string Of(Action&& action) {
    static PrintedText printed;
    printed.text_.clear();
    std::FILE* const real = stdout;
    stdout = printed.stream_;
    action();
    std::fflush(printed.stream_);
    stdout = real;
    return printed.text_;
  }

 private:
  PrintedText() : stream_(fopencookie(this, "w", {nullptr, &Write, nullptr, nullptr})) {
    if (stream_ == nullptr) std::abort();
    __fsetlocking(stream_, FSETLOCKING_BYCALLER);  // one thread prints
  }

  static ssize_t Write(void* self, const char* bytes, std::size_t size) {
    static_cast<PrintedText*>(self)->text_.append(bytes, size);
    return static_cast<ssize_t>(size);
  }

  std::string text_;
  std::FILE* stream_;
};
