#include "config/staged/staged_parameter.h"

#include <algorithm>
#include <cstring>

#include "framework/device_library/world_wide_name.h"
#include "runtime/debug_log.h"
#include "runtime/text.h"

namespace {

const std::byte* At(const StagedParameter& parameter, const void* record) {
  return static_cast<const std::byte*>(record) + parameter.offset;
}

std::byte* At(const StagedParameter& parameter, void* record) {
  return static_cast<std::byte*>(record) + parameter.offset;
}

std::string NumberTextIn(const StagedParameter& parameter, const void* record) {
  const std::uint32_t number = NumberIn(parameter, record);
  return parameter.sign == NumberSign::kSigned ? std::to_string(static_cast<std::int32_t>(number))
                                               : std::to_string(number);
}

std::string NameIn(const StagedParameter& parameter, const void* record) {
  WorldWideName name;
  std::memcpy(&name, At(parameter, record), sizeof name);
  return name.Text();
}

std::string TextIn(const StagedParameter& parameter, const void* record) {
  const auto* const text = reinterpret_cast<const char*>(At(parameter, record));
  return {text, strnlen(text, parameter.width - 1)};
}

std::string ValueIn(const StagedParameter& parameter, const void* record) {
  if (parameter.form == ParameterForm::kName) return NameIn(parameter, record);
  if (parameter.form == ParameterForm::kText) return TextIn(parameter, record);
  return NumberTextIn(parameter, record);
}

void StoreName(const StagedParameter& parameter, const std::string& text, void* record) {
  WorldWideName name;
  if (ReadName(text.c_str(), name) != nullptr) std::memcpy(At(parameter, record), &name, sizeof name);
}

// A text that is the record's own leaves the bytes after its end alone.
void StoreText(const StagedParameter& parameter, const std::string& text, void* record) {
  if (text == TextIn(parameter, record)) return;
  auto* const target = reinterpret_cast<char*>(At(parameter, record));
  std::memset(target, 0, parameter.width);
  BoundedCopy(target, parameter.width, text.substr(0, parameter.width - 1).c_str(), kWholeText);
}

bool StoreNumber(const StagedParameter& parameter, const std::string& text, void* record) {
  constexpr NumberRule kZeroOrOne = {.limit = 1};
  const auto number = ReadNumber(text, IsFlag(parameter.form) ? kZeroOrOne : parameter.rule);
  if (!number.has_value()) return false;
  std::memcpy(At(parameter, record), &*number, parameter.width);
  return true;
}

bool Store(const StagedParameter& parameter, const std::string& text, void* record) {
  switch (parameter.form) {
    case ParameterForm::kName:
      StoreName(parameter, text, record);
      return true;
    case ParameterForm::kText:
      StoreText(parameter, text, record);
      return true;
    default:
      return StoreNumber(parameter, text, record);
  }
}

std::string WholeKey(std::string_view begin, const StagedParameter& parameter) {
  return std::string(begin).append(parameter.key);
}

}  // namespace

bool IsStageable(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return character > ' ' && character <= '~' && character != '#'; });
}

// Numbers are little-endian like the records, so the narrow ones are the first bytes of the wide one.
std::uint32_t NumberIn(const StagedParameter& parameter, const void* record) {
  std::uint32_t number = 0;
  std::memcpy(&number, At(parameter, record), parameter.width);
  return number;
}

bool FlagIn(const StagedParameter& parameter, const void* record) {
  return (NumberIn(parameter, record) != 0) == (parameter.form == ParameterForm::kFlag);
}

void AddValue(const StagedParameter& parameter, const void* record, StagedValues& values,
              std::string_view key_begin) {
  std::string value = ValueIn(parameter, record);
  if (parameter.form == ParameterForm::kText && !IsStageable(value)) return;
  values[WholeKey(key_begin, parameter)] = std::move(value);
}

StatusCode ReadValue(const CommandRun& run, const StagedParameter& parameter, const StagedFile& file,
                     void* record, std::string_view key_begin) {
  const std::string key = WholeKey(key_begin, parameter);
  std::string value;
  if (!file.Find(key, value)) return kSuccess;
  if (!Store(parameter, value, record)) {
    return run.Refuse(kInvalidParameter, "%s=%s is out of range", key.c_str(), value.c_str());
  }
  LogValue(run, parameter, record, key_begin);
  return kSuccess;
}

CheckResult TakeValue(const StagedParameter& parameter, const std::string& value, StagedValues& changes) {
  if (!IsFlag(parameter.form)) {
    const auto number = ReadNumber(value, parameter.rule);
    if (!number.has_value()) return kOutOfRange;
    changes[std::string(parameter.key)] = std::to_string(*number);
    return {};
  }
  const auto flag = ReadTrueFalse(value);
  if (!flag.has_value()) return kNotTrueOrFalse;
  const bool stored = *flag == (parameter.form == ParameterForm::kFlag);
  changes[std::string(parameter.key)] = std::to_string(static_cast<int>(stored));
  return {};
}

void LogValue(const CommandRun& run, const StagedParameter& parameter, const void* record,
              std::string_view key_begin) {
  if (!IsDebugLevelOn(kDebugTrace)) return;
  const std::string name =
      parameter.log_name.Empty() ? WholeKey(key_begin, parameter) : std::string(parameter.log_name);
  run.Trace("%s=%s", name.c_str(), ValueIn(parameter, record).c_str());
}

void AddValues(std::span<const StagedParameter> parameters, const void* record, StagedValues& values) {
  for (const StagedParameter& parameter : parameters) AddValue(parameter, record, values);
}

StatusCode ReadValues(const CommandRun& run, std::span<const StagedParameter> parameters,
                      const StagedFile& file, void* record) {
  for (const StagedParameter& parameter : parameters) {
    if (const StatusCode status = ReadValue(run, parameter, file, record); status != kSuccess) return status;
  }
  return kSuccess;
}

void LogValues(const CommandRun& run, std::span<const StagedParameter> parameters, const void* record) {
  for (const StagedParameter& parameter : parameters) LogValue(run, parameter, record);
}
