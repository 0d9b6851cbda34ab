// Command-line words of the tools: options, operands, and what is wrong with them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

// What every tool ends with: all went well; a mistake, a difference or a failure; wrong usage.
enum ExitStatus : int { kGood = 0, kMistake = 1, kWrongUsage = 2 };

using Words = std::vector<std::string>;

// An option that a command knows.
struct Option {
  const char* name;             // "--output"
  const char* short_name = "";  // "-o", or empty
  const char* value = nullptr;  // what it takes, for messages: "FILE"; null for a switch
};

// The words of one command, taken apart. "--name VALUE" and "--name=VALUE" are the same; "--" ends the
// options;
// "-" alone is an operand.
class Arguments {
 public:
  // `program` names the command in messages: "zfc-lab check".
  Arguments(std::string_view program, const Words& words, std::initializer_list<Option> options);

  // False after words that do not fit; standard error then has the reason and where help is.
  bool Good() const { return good_; }

  // Whether the switch, or the option with its value, was given.
  bool Has(std::string_view name) const { return Value(name) != nullptr; }

  // The value of an option, its last one if it was given several times; null when it was not given.
  const std::string* Value(std::string_view name) const;

  // All values of an option, in their order.
  Words Values(std::string_view name) const;

  // A whole number from `low` to `high`; `fallback` when the option was not given. A value that is none is
  // wrong usage: Good() is false from then on.
  long Number(std::string_view name, long low, long high, long fallback);

  const Words& Operands() const { return operands_; }

  // Reports `what` as wrong usage on standard error: "zfc-lab check: <what>", then where help is.
  ExitStatus Refuse(std::string_view what);

 private:
  struct Given {
    const Option* option;
    std::string value;
  };

  bool TakeOption(const Words& words, std::size_t& at);

  std::string program_;
  std::vector<Option> options_;
  std::vector<Given> given_;
  Words operands_;
  bool good_ = true;
};

}  // namespace tools
