#include "config/options.h"

#include <algorithm>
#include <cstdlib>

std::optional<bool> ReadTrueFalse(std::string_view word) {
  if (EqualNoCase(word, "true")) return true;
  if (EqualNoCase(word, "false")) return false;
  return std::nullopt;
}

const CodeText* FindCode(std::span<const CodeText> table, std::string_view word) {
  for (const CodeText& row : table) {
    if (EqualNoCase(word, row.text)) return &row;
  }
  return nullptr;
}

std::uint32_t NumberOf(const std::string& text) {
  return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 10));
}

bool NumberRule::Allows(std::uint32_t number) const {
  return only.empty() ? number <= limit : std::find(only.begin(), only.end(), number) != only.end();
}

std::optional<std::uint32_t> ReadNumber(const std::string& text, const NumberRule& rule) {
  const std::uint32_t number = NumberOf(text);
  return rule.Allows(number) ? std::optional(number) : std::nullopt;
}

StatusCode LogRefusal(const CommandRun& run, const OptionName& option, const std::string& value,
                      const CheckResult& result) {
  run.Trace("%s=%s: %s", option.long_name.CString(), value.c_str(), result.reason);
  return result.status;
}
