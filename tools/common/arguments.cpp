#include "tools/common/arguments.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "framework/device_library/harmless_text.h"

namespace tools {

Arguments::Arguments(std::string_view program, const Words& words, std::initializer_list<Option> options)
    : program_(program), options_(options) {
  for (std::size_t at = 0; at < words.size() && good_; ++at) {
    const std::string& word = words[at];
    if (word == "--") {
      operands_.insert(operands_.end(), words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end());
      return;
    }
    if (word.size() > 1 && word[0] == '-') {
      good_ = TakeOption(words, at);
    } else {
      operands_.push_back(word);
    }
  }
}

// Takes the option at words[at] and moves `at` to its last word.
bool Arguments::TakeOption(const Words& words, std::size_t& at) {
  const std::string& word = words[at];
  const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
  const std::string name = word.substr(0, equals);
  for (const Option& option : options_) {
    if (name != option.name && name != option.short_name) continue;
    if (option.value == nullptr) {
      if (equals != std::string::npos) return Refuse(name + " takes no value") == kGood;
      given_.push_back({&option, ""});
    } else if (equals != std::string::npos) {
      given_.push_back({&option, word.substr(equals + 1)});
    } else if (at + 1 < words.size()) {
      given_.push_back({&option, words[++at]});
    } else {
      return Refuse(name + " needs a value: " + option.value) == kGood;
    }
    return true;
  }
  return Refuse("unknown option '" + name + "'") == kGood;
}

const std::string* Arguments::Value(std::string_view name) const {
  const std::string* value = nullptr;
  for (const Given& given : given_) {
    if (name == given.option->name) value = &given.value;
  }
  return value;
}

Words Arguments::Values(std::string_view name) const {
  Words values;
  for (const Given& given : given_) {
    if (name == given.option->name) values.push_back(given.value);
  }
  return values;
}

long Arguments::Number(std::string_view name, long low, long high, long fallback) {
  const std::string* const value = Value(name);
  if (value == nullptr) return fallback;
  char* end = nullptr;
  errno = 0;
  const long number = std::strtol(value->c_str(), &end, 10);
  if (value->empty() || *end != '\0' || errno != 0 || number < low || number > high) {
    Refuse(std::string(name) + ": expected a number from " + std::to_string(low) + " to " +
           std::to_string(high) + ", got '" + *value + "'");
    return fallback;
  }
  return number;
}

ExitStatus Arguments::Refuse(std::string_view what) {
  good_ = false;
  std::fprintf(stderr, "%s: %s\nTry '%s --help'.\n", program_.c_str(), Harmless(what).c_str(),
               program_.c_str());
  return kWrongUsage;
}

}  // namespace tools
