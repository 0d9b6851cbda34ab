#include "runtime/local_time.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

int FormatLocalTime(const timeval& time, char* text, std::size_t size) {
  if (size == 0) return 0;
  text[0] = '\0';
  std::tm local{};
  if (localtime_r(&time.tv_sec, &local) == nullptr) return 0;
  const int length = std::snprintf(text, size, "%d/%d/%d %02d:%02d:%02d.%03d", local.tm_mon + 1,
                                   local.tm_mday, local.tm_year + 1900, local.tm_hour, local.tm_min,
                                   local.tm_sec, static_cast<int>(time.tv_usec / 1000));
  return std::clamp(length, 0, static_cast<int>(size) - 1);
}
