#include "framework/report_text.h"

#include <cstdarg>
#include <cstdlib>
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
  BoundedAppend(buffer_, size_, line.c_str());
}
