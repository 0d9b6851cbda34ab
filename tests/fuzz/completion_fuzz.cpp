// What the reference says, with any bytes in its texts, as the completion of two shells and as the descriptor
// of the host's shell.
//
// Oracle: parse(print(x)) = x, by readers of their own. The quoted words of a completion script, read as a
// shell reads single quotes, are the table. The descriptor is well-formed XML that holds the texts; the line
// that it gives to a shell, with any value in the place of a parameter, is split as a shell splits it
// (POSIX.1 XCU 2.2, 2.7.4) into the words that the program is to get.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_input.h"
#include "reference/print/completion.h"
#include "reference/print/descriptor.h"
#include "xml_checker.h"

namespace {

using reference::Command;
using reference::Node;
using reference::Parameter;
using reference::Reference;

void Require(bool condition) {
  if (!condition) std::abort();
}

// The input, and whether all texts taken so far have only characters that XML has.
class Texts {
 public:
  Texts(const std::uint8_t* data, std::size_t size) : input_(data, size) {}

  std::uint8_t Byte() { return input_.Byte(); }
  std::string Text() {
    std::string text = input_.Text();
    for (std::string_view rest = text; !rest.empty();) {
      const std::size_t length = xml::CharacterLength(rest);
      are_xml_ = are_xml_ && length > 0;
      rest.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
  }
  bool AreXml() const { return are_xml_; }

 private:
  FuzzInput input_;
  bool are_xml_ = true;
};

// Of the letters that names have.
std::string Name(Texts& input) {
  std::string name = "n";
  for (int i = input.Byte() % 6; i > 0; --i) name += static_cast<char>('a' + input.Byte() % 26);
  return name;
}

reference::ValueRule Rule(Texts& input) {
  reference::ValueRule rule;
  constexpr const char* kTypes[] = {"word", "bool", "number", "port"};
  rule.type = kTypes[input.Byte() % 4];
  if (rule.type != "bool") {
    for (int i = input.Byte() % 3; i > 0; --i) rule.choices.push_back(input.Text());
  }
  return rule;
}

Command MakeCommand(Texts& input) {
  Command command;
  command.word = Name(input);
  command.text_word = command.word + "cli";
  command.does = input.Text();
  command.warning = input.Text();
  for (int i = input.Byte() % 3; i > 0; --i) {
    reference::Argument argument;
    argument.name = "w" + std::to_string(i) + Name(input);
    argument.about = input.Text();
    argument.optional = (input.Byte() & 1) != 0;
    argument.values = Rule(input);
    command.arguments.push_back(argument);
  }
  for (int i = input.Byte() % 3; i > 0; --i) {
    reference::Option option;
    option.long_name = "--o" + std::to_string(i) + Name(input);
    option.short_name = std::string("-") + static_cast<char>('0' + i);
    option.about = input.Text();
    option.default_text = input.Text();
    option.values = Rule(input);
    command.options.push_back(option);
  }
  command.document.emplace();
  command.document->structure = input.Text();
  command.document->is_list = (input.Byte() & 1) != 0;
  reference::Field field;
  field.name = input.Text();
  field.type = "string";
  command.document->fields.push_back(field);
  return command;
}

Reference MakeReference(Texts& input) {
  Reference made;
  made.version = input.Text();
  made.kinds["port"].complete = input.Text();
  for (int i = 1 + input.Byte() % 2; i > 0; --i) {
    Node node;
    node.words = {"-t", Name(input)};
    node.title = input.Text();
    for (int j = input.Byte() % 3; j > 0; --j) node.commands.push_back(MakeCommand(input));
    made.nodes.push_back(node);
  }
  return made;
}

// Takes one word of a shell: unquoted letters, single and double quotes, "\\'". A double-quoted part may hold
// a command substitution of `cat` with a here-document whose end is quoted, whose text it gives without the
// line ends at its end. Nothing for what is none of these.
class ShellReader {
 public:
  explicit ShellReader(std::string_view text) : rest_(text) {}

  void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }
  bool Take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }
  bool Empty() const { return rest_.empty(); }

  std::optional<std::string> Word() {
    std::string word;
    while (!rest_.empty() && kEnds.find(rest_.front()) == std::string_view::npos) {
      if (Take("'")) {
        const std::size_t end = rest_.find('\'');
        if (end == std::string_view::npos) return std::nullopt;
        word += rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
      } else if (Take("\"$(cat <<'")) {
        if (!TakeHereDocument(word)) return std::nullopt;
      } else if (Take("\\'")) {
        word += '\'';
      } else if (kPlain.find(rest_.front()) != std::string_view::npos) {
        word += rest_.front();
        rest_.remove_prefix(1);
      } else {
        return std::nullopt;
      }
    }
    return word;
  }

 private:
  static constexpr std::string_view kEnds = " \n]";
  static constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/.-_";

  bool TakeHereDocument(std::string& word) {
    const std::size_t mark_end = rest_.find("'\n");
    if (mark_end == std::string_view::npos) return false;
    const std::string mark = std::string(rest_.substr(0, mark_end)) + "\n";
    rest_.remove_prefix(mark_end + 2);
    std::string text;
    while (!rest_.starts_with(mark)) {
      const std::size_t end = rest_.find('\n');
      if (end == std::string_view::npos) return false;
      text += rest_.substr(0, end + 1);
      rest_.remove_prefix(end + 1);
    }
    rest_.remove_prefix(mark.size());
    while (text.ends_with('\n')) text.pop_back();
    word += text;
    return Take(")\"");
  }

  std::string_view rest_;
};

// The rows of both scripts, which have a line that the table takes the place of.
void CheckCompletion(const Reference& made) {
  const std::map<std::string, std::string> table = CompletionTable(made);
  const std::string bash = BashCompletion(made, "begin\n@TABLE@\nend\n");
  const std::string zsh = ZshCompletion(made, "begin\n@TABLE@\nend\n");
  ShellReader bash_rows(bash);
  ShellReader zsh_rows(zsh);
  Require(bash_rows.Take("begin\n") && zsh_rows.Take("begin\n"));
  for (const auto& [key, value] : table) {
    Require(bash_rows.Take("  [") && bash_rows.Word() == key && bash_rows.Take("]=") &&
            bash_rows.Word() == value);
    Require(zsh_rows.Take("  ") && zsh_rows.Word() == key && zsh_rows.Take(" ") && zsh_rows.Word() == value);
    Require(bash_rows.Take("\n") && zsh_rows.Take("\n"));
  }
  Require(bash_rows.Take("end\n") && bash_rows.Empty() && zsh_rows.Take("end\n") && zsh_rows.Empty());
}

// The line with a value for each parameter, which the host's shell puts there as it is: "$val{NAME}" is the
// value, and
// "$if{NAME, TEXT}" is the text where there is one.
std::string WithValues(const std::string& line, const std::map<std::string, std::string>& values) {
  std::string result;
  bool in_condition = false;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t brace = line.find('{', at);
    if (line.compare(at, 4, "$if{") == 0) {
      at = line.find(',', brace) + 1;
      in_condition = true;
    } else if (line.compare(at, 5, "$val{") == 0) {
      const std::size_t end = line.find('}', brace);
      result += values.at(line.substr(brace + 1, end - brace - 1));
      at = end + 1;
    } else if (in_condition && line[at] == '}') {
      in_condition = false;
      ++at;
    } else {
      result += line[at++];
    }
  }
  return result;
}

// A value that no shell can keep apart from what is around it; the documents name them.
bool BreaksOut(const Parameter& parameter, const std::string& value) {
  return parameter.constants.empty() ? value.find("end-of-the-value-for-zfcesxcli") != std::string::npos
                                     : value.find('\'') != std::string::npos;
}

void CheckLine(const Node& node, const Command& command, Texts& input) {
  std::vector<std::string> expected = {"/opt/ZunaFcEsxcliPlugin/bin/zfcesxcli", "-t", node.words[1],
                                       command.word};
  std::map<std::string, std::string> values;
  for (const Parameter& parameter : ParametersOf(command)) {
    std::string value = input.Text();
    if (!parameter.constants.empty()) value = parameter.constants[0];
    if (parameter.type == "int") value = std::to_string(input.Byte() - 128);
    if (BreaksOut(parameter, value)) return;
    values[parameter.name] = value;
    // A command substitution drops the line ends at the end.
    while (parameter.constants.empty() && value.ends_with('\n')) value.pop_back();
    if (!parameter.option.empty()) expected.push_back(parameter.option);
    expected.push_back(value);
  }
  const std::string line = WithValues(ExecuteText(node, command), values);
  ShellReader reader(line);
  std::vector<std::string> words;
  while (!reader.Empty()) {
    const std::optional<std::string> word = reader.Word();
    Require(word.has_value());
    words.push_back(*word);
    reader.SkipBlanks();
  }
  Require(words == expected);
}

std::string WithQuotes(std::string text) {
  for (char& c : text) c = c == '`' ? '"' : c;
  return text;
}

// The child of this name at this place among those of the name.
const xml::Element& Child(const xml::Element& element, std::string_view name, std::size_t number = 0) {
  for (const xml::Element& child : element.children) {
    if (child.name == name && number-- == 0) return child;
  }
  std::abort();
}

void CheckDescriptor(const Reference& made) {
  const std::optional<xml::Element> root = xml::Reader::Read(DescriptorText(made));
  Require(root.has_value() && root->name == "plugin");
  Require(Child(*root, "version").text == made.version);
  const xml::Element& commands = Child(*root, "commands");
  std::size_t number = 0;
  for (const Node& node : made.nodes) {
    for (const Command& command : node.commands) {
      const xml::Element& element = Child(commands, "command", number++);
      const std::string warning = command.warning.empty() ? "" : " WARNING: " + WithQuotes(command.warning);
      Require(Child(element, "description").text == WithQuotes(command.does) + warning);
      Require(Child(element, "execute").text == ExecuteText(node, command));
      const std::vector<Parameter> parameters = ParametersOf(command);
      const xml::Element& inputs = Child(element, "input-spec");
      Require(inputs.children.size() == parameters.size());
      for (std::size_t i = 0; i < parameters.size(); ++i) {
        Require(Child(inputs.children[i], "description").text == parameters[i].about);
        for (std::size_t j = 0; j < parameters[i].constants.size(); ++j) {
          Require(Child(inputs.children[i], "constant", j).text == parameters[i].constants[j]);
        }
      }
      const xml::Element& output = Child(element, "output-spec");
      const xml::Element& structure =
          Child(command.document->is_list ? output.children.at(0) : output, "structure");
      Require(structure.attributes.at(0).second == command.document->structure);
      Require(structure.children.back().attributes.at(0).second == command.document->fields[0].name);
    }
  }
  Require(number == commands.children.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Texts input(data, size);
  const Reference made = MakeReference(input);
  const bool is_xml = input.AreXml();
  CheckCompletion(made);
  if (is_xml) CheckDescriptor(made);
  for (const Node& node : made.nodes) {
    for (const Command& command : node.commands) CheckLine(node, command, input);
  }
  return 0;
}
