// The debug log of a test: turned on and off, and read.
#pragma once

#include <errno.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "runtime/debug_log.h"
#include "support/unit_files.h"

// Returns where the debug log of a program lies that was started as `started_as`.
inline std::string DebugLogPath(const std::string& started_as) {
  const std::size_t slash = started_as.rfind('/');
  std::string component = slash == std::string::npos ? "/viplugin" : started_as.substr(slash);
  component.resize(std::min(component.size(), component.find(".so")));
  return "/var/tmp" + component + ".log";
}

// Returns a line of the log without its time, which must be of the form m/d/y hh:mm:ss.mmm; a text that says
// what is wrong with any other.
inline std::string WithoutTime(const std::string& line) {
  int month = 0, day = 0, year = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
  if (std::sscanf(line.c_str(), "%d/%d/%d %d:%d:%d.%d ", &month, &day, &year, &hour, &minute, &second,
                  &millisecond) != 7) {
    return "no time in: " + line;
  }
  char time[128];
  std::snprintf(time, sizeof time, "%d/%d/%d %02d:%02d:%02d.%03d ", month, day, year, hour, minute, second,
                millisecond);
  if (!line.starts_with(time)) return "other form of time in: " + line;
  return line.substr(std::string(time).size());
}

// Turns the debug log on and off, and reads what it holds.
class DebugLogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    unlink(path_.c_str());
    SetMask("0");
  }

  void TearDown() override {
    unsetenv("ZNFC_DEBUG_LEVEL");
    InitDebugLog();
    unlink(path_.c_str());
  }

  static void SetMask(const char* value) {
    setenv("ZNFC_DEBUG_LEVEL", value, 1);
    InitDebugLog();
  }

  std::string Content() const { return ContentOf(path_); }

  // The lines so far without their times, line ends left out.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    const std::string content = Content();
    for (std::size_t start = 0; start < content.size();) {
      const std::size_t end = content.find("\r\n", start);
      lines.push_back(WithoutTime(content.substr(start, end - start)));
      if (end == std::string::npos) break;
      start = end + 2;
    }
    return lines;
  }

  // The head of a line without and with a tag.
  static std::string Head() { return "CIM Provider " + std::to_string(getpid()) + ": "; }
  static std::string Head(const std::string& tag) {
    return "CIM Provider " + tag + " " + std::to_string(getpid()) + ": ";
  }

  // The messages of the lines with the tag of level 1 or of level 4, without their heads.
  std::vector<std::string> Steps() const { return Messages(Head("INFORMATION")); }
  std::vector<std::string> Failures() const { return Messages(Head("DEBUG      ")); }

  const std::string path_ = DebugLogPath(program_invocation_name);

 private:
  std::vector<std::string> Messages(const std::string& head) const {
    std::vector<std::string> messages;
    for (const std::string& line : Lines()) {
      if (line.starts_with(head)) messages.push_back(line.substr(head.size()));
    }
    return messages;
  }
};

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
  std::string content = ContentOf(path);
  unlink(path.c_str());
  for (std::size_t end = 0; (end = content.find("\r\n")) != std::string::npos; content.erase(0, end + 2)) {
    const std::string line = WithoutTime(content.substr(0, end));
    messages.push_back(line.starts_with(head) ? line.substr(head.size()) : line);
  }
  if (!content.empty()) messages.push_back("no line end: " + content);
  return messages;
}
