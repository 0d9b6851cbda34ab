#include "reference/print/completion.h"

#include "reference/print/text.h"

namespace reference {
namespace {

// The line of a script in whose place the table comes.
constexpr const char* kTablePlace = "@TABLE@\n";

std::string Lower(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

std::string RuleOf(const Reference& reference, const ValueRule& values) {
  if (!values.choices.empty()) return "=" + Join(values.choices, "|");
  if (values.type == "bool") return "=true|false";
  const auto kind = reference.kinds.find(values.type);
  if (kind != reference.kinds.end() && !kind->second.complete.empty()) return "@" + kind->second.complete;
  return "-";
}

void AddCommand(const Reference& reference, const std::string& node, const Command& command,
                const std::string& word, std::map<std::string, std::string>& table) {
  const std::string key = Lower(node + " " + word);
  std::vector<std::string> rules;
  for (const Argument& argument : command.arguments) rules.push_back(RuleOf(reference, argument.values));
  if (!rules.empty()) table["arguments " + key] = Join(rules, " ");
  std::vector<std::string> names;
  for (const Option& option : command.options) {
    for (const std::string& name : {option.long_name, option.short_name}) {
      names.push_back(name);
      table["value " + key + " " + name] = RuleOf(reference, option.values);
    }
  }
  if (!names.empty()) table["options " + key] = Join(names, " ");
}

// Single quotes hold every byte but themselves, in both shells.
std::string Quoted(const std::string& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

}  // namespace

std::map<std::string, std::string> CompletionTable(const Reference& reference) {
  std::map<std::string, std::string> table;
  table["commands "] = "help";
  for (const Node& node : reference.nodes) {
    if (node.words.empty()) continue;  // the shell's own words do nothing on a command line
    const std::string name = node.Name();
    const std::size_t blank = name.rfind(' ');
    const std::string above = blank == std::string::npos ? "" : name.substr(0, blank);
    std::string& nodes = table["nodes " + above];
    const std::string pair = node.words[node.words.size() - 2] + " " + node.words.back();
    nodes += (nodes.empty() ? "" : " ") + pair;
    std::vector<std::string> words;
    for (const Command& command : node.commands) {
      words.push_back(command.word);
      words.push_back(command.text_word);
      AddCommand(reference, name, command, command.word, table);
      AddCommand(reference, name, command, command.text_word, table);
    }
    words.emplace_back("help");
    table["commands " + name] = Join(words, " ");
  }
  return table;
}

std::string BashCompletion(const Reference& reference, const std::string& script) {
  std::string rows;
  for (const auto& [key, value] : CompletionTable(reference)) {
    rows += "  [" + Quoted(key) + "]=" + Quoted(value) + "\n";
  }
  return Replaced(script, kTablePlace, rows);
}

std::string ZshCompletion(const Reference& reference, const std::string& script) {
  std::string rows;
  for (const auto& [key, value] : CompletionTable(reference))
    rows += "  " + Quoted(key) + " " + Quoted(value) + "\n";
  return Replaced(script, kTablePlace, rows);
}

}  // namespace reference
