// The text of a report: lines in one buffer of fixed size.
#pragma once

#include <cstddef>

class ReportText {
 public:
  // A zeroed buffer of `size` bytes, terminator included. Ask Allocated() before the first line.
  explicit ReportText(std::size_t size);
  ~ReportText();
  ReportText(const ReportText&) = delete;
  ReportText& operator=(const ReportText&) = delete;

  bool Allocated() const { return buffer_ != nullptr; }

  // Formats one line of at most 1024 characters and appends it. A line that does not fit is dropped whole;
  // the lines after it can still fit.
  [[gnu::format(printf, 2, 3)]] void Line(const char* format, ...);

  // Appends a piece of a line, of any length, unchanged. A piece that does not fit is dropped whole.
  void Append(const char* piece);

  const char* Text() const { return buffer_; }

 private:
  std::size_t size_;
  std::size_t length_ = 0;
  char* buffer_;
};
