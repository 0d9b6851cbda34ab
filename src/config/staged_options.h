// The options of a `setFile` command: looked up and checked by one loop over a table.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "config/staged_file.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"
#include "framework/words.h"

// What a check came to. The reason stands in the debug log alone; it tells the causes of one status apart.
struct CheckResult {
  StatusCode status = kSuccess;
  const char* reason = "";
};

// Stores in `value` what the user gave for the option, in a search of its own over the words: the first of
// several counts. False without one.
bool FindOption(const Words& words, const char* long_name, const char* short_name, std::string& value);

// "true" or "false", in any case; false for any other word.
bool ReadTrueFalse(const std::string& value, bool& flag);

// The checks of one command, from option to option: the port and the file they look at, and the values that
// passed, which reach the file only when all options have.
struct OptionChecks {
  const FCProtocolEntry& fc;
  const StagedFile& file;
  StagedValues& values;
};

// One option. `Checks` is OptionChecks or a class derived from it, for rules that look at more.
template <class Checks>
struct StagedOption {
  const char* long_name;
  const char* short_name;
  const char* key;
  // Whether port and adapter have the option at all; null when all have.
  CheckResult (*allow)(const Checks& checks);
  // Checks the value and adds what is to be stored.
  CheckResult (*take)(Checks& checks, const StagedOption& option, const std::string& value);
  std::uint32_t parameter = 0;  // for `take`: the greatest number, or the number that stands for "true"
};

constexpr CheckResult kNotTrueOrFalse = {kInvalidParameter, "neither true nor false"};
constexpr CheckResult kOutOfRange = {kInvalidParameter, "out of range"};
constexpr CheckResult kNotThisAdapter = {kFeatureNotSupported, "not supported for this adapter"};

// A number of at most option.parameter.
template <class Checks>
CheckResult TakeNumber(Checks& checks, const StagedOption<Checks>& option, const std::string& value) {
  const std::uint32_t number = NumberOf(value);
  if (number > option.parameter) return kOutOfRange;
  checks.values[option.key] = std::to_string(number);
  return {};
}

// "true", which is stored as option.parameter, or "false", which is stored as the other one of 0 and 1.
template <class Checks>
CheckResult TakeTrueFalse(Checks& checks, const StagedOption<Checks>& option, const std::string& value) {
  bool flag = false;
  if (!ReadTrueFalse(value, flag)) return kNotTrueOrFalse;
  checks.values[option.key] = std::to_string(flag ? option.parameter : 1 - option.parameter);
  return {};
}

void LogRefusal(const char* option, const std::string& value, const CheckResult& result);

// Checks the options that the user gave, in the order of the table, and stops at the first that fails: its
// status is the result.
template <class Checks>
StatusCode TakeOptions(std::span<const StagedOption<Checks>> options, const Words& words, Checks& checks) {
  for (const StagedOption<Checks>& option : options) {
    std::string value;
    if (!FindOption(words, option.long_name, option.short_name, value)) continue;
    CheckResult result = option.allow == nullptr ? CheckResult{} : option.allow(checks);
    if (result.status == kSuccess) result = option.take(checks, option, value);
    if (result.status == kSuccess) continue;
    LogRefusal(option.long_name, value, result);
    return result.status;
  }
  return kSuccess;
}
