// What a piece of code writes to the debug log.
#pragma once

#include <errno.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "runtime/debug_log.h"
#include "unit/runtime/debug_log_file.h"

// The messages that `action` logs at `level`, one of the tagged levels: the lines without time, tag and line
// end. A line of another form is returned with all that it has.
template <class Action>
std::vector<std::string> LoggedAt(std::int32_t level, Action&& action) {
  const std::string path = DebugLogPath(program_invocation_name);
  const auto set_mask = [](std::int32_t mask) {
    setenv("ZNFC_DEBUG_LEVEL", std::to_string(mask).c_str(), 1);
    InitDebugLog();
  };
  unlink(path.c_str());
  set_mask(level);
  action();
  set_mask(0);
  unsetenv("ZNFC_DEBUG_LEVEL");

  const std::string head =
      std::string("CIM Provider ") + DebugLevelTag(level) + " " + std::to_string(getpid()) + ": ";
  std::vector<std::string> messages;
  std::string content = ReadWholeFile(path);
  unlink(path.c_str());
  for (std::size_t end = 0; (end = content.find("\r\n")) != std::string::npos; content.erase(0, end + 2)) {
    const std::string line = WithoutTime(content.substr(0, end));
    messages.push_back(line.starts_with(head) ? line.substr(head.size()) : line);
  }
  if (!content.empty()) messages.push_back("no line end: " + content);
  return messages;
}
