#include "config/staged_options.h"

#include "runtime/debug_log.h"

bool FindOption(const Words& words, const char* long_name, const char* short_name, std::string& value) {
  Words copy = words;
  return GetOptionValue(copy, long_name, short_name, value);
}

bool ReadTrueFalse(const std::string& value, bool& flag) {
  flag = EqualNoCase(value, "true");
  return flag || EqualNoCase(value, "false");
}

void LogRefusal(const char* option, const std::string& value, const CheckResult& result) {
  DebugLogLevel(kDebugTrace, "setFile: %s=%s: %s", option, value.c_str(), result.reason);
}
