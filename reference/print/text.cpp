#include "reference/print/text.h"

#include <algorithm>

namespace reference {
namespace {

// The least number of blanks that the lines begin with.
std::size_t MarginOf(const std::vector<std::string>& lines) {
  std::size_t margin = std::string::npos;
  for (const std::string& line : lines) {
    if (!line.empty()) margin = std::min(margin, line.find_first_not_of(' '));
  }
  return margin == std::string::npos ? 0 : margin;
}

// A name that stands for a value: "--boot-mode" gives "MODE".
std::string ValueName(const std::string& long_name) {
  std::string name = long_name.substr(long_name.rfind('-') + 1);
  for (char& letter : name) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  const bool is_number = name.find_first_not_of("0123456789") == std::string::npos;
  return is_number ? "VALUE" : name;
}

// "A, B and C".
std::string Listed(const std::vector<std::string>& words, const std::string& last) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? " " + last + " " : ", ";
    text += words[i];
  }
  return text;
}

}  // namespace

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    while (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    begin = end + 1;
  }
  return lines;
}

std::vector<Block> BlocksOf(const std::string& text) {
  std::vector<Block> blocks;
  std::vector<std::string> literal;
  const auto end_literal = [&] {
    while (!literal.empty() && literal.back().empty()) literal.pop_back();
    if (literal.empty()) return;
    const std::size_t margin = MarginOf(literal);
    for (std::string& line : literal) line.erase(0, std::min(margin, line.size()));
    blocks.push_back({true, Join(literal, "\n")});
    literal.clear();
  };
  for (const std::string& line : LinesOf(text)) {
    if (!line.empty() && line[0] == ' ') {
      literal.push_back(line);
    } else if (line.empty()) {
      if (!literal.empty()) literal.push_back(line);
    } else {
      end_literal();
      blocks.push_back({false, line});
    }
  }
  end_literal();
  return blocks;
}

std::string Wrapped(const std::string& text, std::size_t width, std::size_t indent, std::size_t first) {
  std::string out;
  std::size_t column = first;
  std::size_t begin = 0;
  bool at_start = true;
  while ((begin = text.find_first_not_of(' ', begin)) != std::string::npos) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    const std::string word = text.substr(begin, end - begin);
    if (!at_start && column + 1 + word.size() > width) {
      out += "\n" + std::string(indent, ' ');
      column = indent;
      at_start = true;
    }
    if (!at_start) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
    at_start = false;
    begin = end;
  }
  return out;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string Plain(const std::string& text) {
  return Replaced(text, "`", "\"");
}

std::string ValuesText(const ValueRule& values) {
  if (!values.choices.empty())
    return values.choices.size() == 1 ? values.choices[0] : Listed(values.choices, "or");
  if (values.least.has_value()) return std::to_string(*values.least) + " to " + std::to_string(*values.most);
  if (values.type == "bool") return "true or false";
  if (values.type == "number") return "a number";
  return {};
}

std::string ValueShown(const Option& option) {
  constexpr std::size_t kLongest = 40;
  if (option.values.type == "bool") return "true|false";
  if (std::string choices = Join(option.values.choices, "|");
      !choices.empty() && choices.size() <= kLongest) {
    return choices;
  }
  return ValueName(option.long_name);
}

std::string ArgumentsShown(const Command& command) {
  std::string text;
  for (const Argument& argument : command.arguments) {
    const std::string choices = Join(argument.values.choices, "|");
    const std::string shown = choices.empty() || choices.size() > 40 ? argument.shown : choices;
    text += (text.empty() ? "" : " ") + (argument.optional ? "[" + shown + "]" : shown);
  }
  constexpr std::size_t kMostShown = 4;
  if (command.options.size() > kMostShown) return text + " OPTIONS";
  for (const Option& option : command.options) {
    text += (text.empty() ? "[" : " [") + option.long_name + "|" + option.short_name + " " +
            ValueShown(option) + "]";
  }
  return text;
}

std::string FamiliesText(const std::vector<std::string>& families) {
  return families.empty() ? "all" : Listed(families, "and");
}

std::string Sentence(const std::string& text) {
  constexpr std::string_view kEnds = ".!?:";
  return text.empty() || kEnds.find(text.back()) != std::string_view::npos ? text : text + ".";
}

std::string Capital(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

std::vector<Task> TasksOf(const Reference& reference) {
  std::vector<Task> tasks;
  for (const Node& node : reference.nodes) {
    for (const std::string& text : node.tasks) tasks.push_back({text, &node});
  }
  std::stable_sort(tasks.begin(), tasks.end(), [](const Task& a, const Task& b) { return a.text < b.text; });
  return tasks;
}

std::vector<MessageUse> MessagesOf(const Reference& reference) {
  std::vector<MessageUse> uses;
  for (const Node& node : reference.nodes) {
    for (const NodeStatus& status : node.statuses) {
      const auto same = [&status](const MessageUse& use) { return use.message == status.message; };
      auto use = std::find_if(uses.begin(), uses.end(), same);
      if (use == uses.end()) use = uses.insert(uses.end(), {status.message, &status, {}});
      if (use->nodes.empty() || use->nodes.back() != &node) use->nodes.push_back(&node);
    }
  }
  std::sort(uses.begin(), uses.end(),
            [](const MessageUse& a, const MessageUse& b) { return a.message < b.message; });
  return uses;
}

const Page* PageNamed(const Reference& reference, const std::string& name) {
  for (const Page& page : reference.pages) {
    if (page.name == name) return &page;
  }
  return nullptr;
}

}  // namespace reference
