// The value that a user gives for an option: found, read and checked, with the reason of a refusal in the
// debug log.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "framework/code_text.h"
#include "framework/command_run.h"
#include "framework/inline_text.h"
#include "framework/status.h"
#include "framework/words.h"

// The names of an option on the command line.
struct OptionName {
  InlineText<28> long_name = {};
  InlineText<2> short_name = {};
};

// What a check came to. The reason appears in the debug log alone, where it separates the causes of one
// status.
struct CheckResult {
  StatusCode status = kSuccess;
  const char* reason = "";
};

inline constexpr CheckResult kNotTrueOrFalse = {kInvalidParameter, "neither true nor false"};
inline constexpr CheckResult kOutOfRange = {kInvalidParameter, "out of range"};
inline constexpr CheckResult kNotThisAdapter = {kFeatureNotSupported, "not supported for this adapter"};

// "true" or "false" in any case; nothing for any other word.
std::optional<bool> ReadTrueFalse(std::string_view word);

// The row whose text is the word, in any case; null for any other word.
const CodeText* FindCode(std::span<const CodeText> table, std::string_view word);

// The number that a text begins with, 0 without one. Decimal; only the low 32 bits of what it comes to count,
// so that a minus sign makes a number that is out of every range.
std::uint32_t NumberOf(const std::string& text);

// The numbers that are allowed: up to a limit, or only those of a list.
struct NumberRule {
  std::uint32_t limit = std::numeric_limits<std::uint32_t>::max();
  std::span<const std::uint32_t> only = {};

  bool Allows(std::uint32_t number) const;
};

// NumberOf a text when the rule allows it, else nothing.
std::optional<std::uint32_t> ReadNumber(const std::string& text, const NumberRule& rule);

// Logs "Class::Function: --option=value: reason" at the trace level and returns the status.
StatusCode LogRefusal(const CommandRun& run, const OptionName& option, const std::string& value,
                      const CheckResult& result);

// Calls check(value), which returns a CheckResult, with what the user gave for the option: the word after the
// first of its names. Returns the check's status, kSuccess without the option.
template <class Check>
StatusCode TakeOption(const CommandRun& run, const OptionName& option, Check check) {
  std::string value;
  if (!FindOption(run.words, option.long_name, option.short_name, value)) return kSuccess;
  const CheckResult result = check(value);
  return result.status == kSuccess ? kSuccess : LogRefusal(run, option, value, result);
}
