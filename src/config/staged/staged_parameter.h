// A parameter of a port as the device's record, the staged file, the command line and the debug log know it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "config/options.h"
#include "config/staged/staged_file.h"
#include "framework/command_run.h"
#include "framework/inline_text.h"
#include "framework/status.h"

enum class ParameterForm : std::uint8_t {
  kNumber,       // that the rule allows
  kFlag,         // 0 or 1; the option's "true" is 1
  kInverseFlag,  // 0 or 1; the option's "true" is 0
  kName,         // a World Wide Name
  kText,         // a text in a field of its own, at most a terminated text of that width
};

// How a file holds a number of 32 bits.
enum class NumberSign : std::uint8_t { kUnsigned, kSigned };

constexpr bool IsFlag(ParameterForm form) {
  return form == ParameterForm::kFlag || form == ParameterForm::kInverseFlag;
}

using ParameterName = InlineText<39>;

struct StagedParameter {
  ParameterName key;            // in the staged file
  ParameterName log_name = {};  // in the debug log; empty: the key
  std::size_t offset = 0;       // in the record
  std::size_t width = 0;        // bytes; of a number 1, 2 or 4, to which a file's number is cut
  ParameterForm form = ParameterForm::kNumber;
  NumberRule rule = {};
  NumberSign sign = NumberSign::kUnsigned;
  OptionName option = {};  // of `setFile`, where one option stands for the parameter
};

// The record's number.
std::uint32_t NumberIn(const StagedParameter& parameter, const void* record);

// What the record's flag means in the words of its option.
bool FlagIn(const StagedParameter& parameter, const void* record);

// Adds the record's value under the parameter's key, before which a file of several records has `key_begin`.
// A text that a file cannot hold is left out.
void AddValue(const StagedParameter& parameter, const void* record, StagedValues& values,
              std::string_view key_begin = {});

// Stores the file's value, of the same key, in the record. A key that the file lacks leaves the field as it
// was; so does a name that is not complete. kInvalidParameter for a number that the rule does not allow.
StatusCode ReadValue(const CommandRun& run, const StagedParameter& parameter, const StagedFile& file,
                     void* record, std::string_view key_begin = {});

// Checks an option's value as the form asks, and adds what it stores under the parameter's key. For numbers
// and flags.
CheckResult TakeValue(const StagedParameter& parameter, const std::string& value, StagedValues& changes);

// Logs the record's value at the trace level.
void LogValue(const CommandRun& run, const StagedParameter& parameter, const void* record,
              std::string_view key_begin = {});

// The same for a table: in its order, and up to the first failure.
void AddValues(std::span<const StagedParameter> parameters, const void* record, StagedValues& values);
StatusCode ReadValues(const CommandRun& run, std::span<const StagedParameter> parameters,
                      const StagedFile& file, void* record);
void LogValues(const CommandRun& run, std::span<const StagedParameter> parameters, const void* record);

// True for a text that comes back from a staged file as it was: printable, without blanks and without "#".
bool IsStageable(std::string_view text);
