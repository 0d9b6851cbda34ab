#include "framework/report_text.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "runtime/debug_log.h"
#include "runtime/text.h"

ReportText::ReportText(std::size_t size) : size_(size), buffer_(static_cast<char*>(std::calloc(size, 1))) {}

ReportText::~ReportText() {
  std::free(buffer_);
}

void ReportText::Line(const char* format, ...) {
  std::string line;
  va_list arguments;
  va_start(arguments, format);
  FormatStringV(line, format, arguments);
  va_end(arguments);
  DebugLogLevel(kDebugTrace, "%s", line.c_str());
  Append(line.c_str());
}

void ReportText::Append(const char* piece) {
  if (BoundedAppend(buffer_ + length_, size_ - length_, piece) == kTextDone) {
    length_ += std::strlen(buffer_ + length_);
  }
}
