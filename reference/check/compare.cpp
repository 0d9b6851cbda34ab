#include "reference/check/compare.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "reference/check/sources.h"
#include "reference/whole_file.h"

namespace reference {
namespace {

using Sources = std::map<std::string, SourceTexts>;

constexpr const char* kUnknownMessage = "Failed, Unknown";

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

class Comparison {
 public:
  Comparison(const Reference& reference, const std::vector<ProgramNode>& program,
             const std::filesystem::path& root, Mistakes& mistakes)
      : reference_(reference),
        program_(program),
        root_(root),
        sources_(TextsBelow(root, "src")),
        mistakes_(mistakes) {}

  void Run(bool partial);

 private:
  void Equal(const FilePlace& place, const std::string& what, const std::string& described,
             const std::string& of_program);
  void CompareNode(const Node& node, const ProgramNode& program);
  void CompareCommands(const Node& node, const ProgramNode& program);
  void CompareUsage(const Command& command, const ProgramCommand& program);
  void CompareFrame(const Node& node, const ProgramNode& program);
  void CompareMessages(const Node& node, const ProgramNode& program);
  void CompareOptions(const Node& node);
  void CompareStatusKinds();
  void CompareAllSources();
  std::vector<std::string> SourcesOf(const Node& node) const;
  bool IsInSources(const std::string& message) const;

  const Reference& reference_;
  const std::vector<ProgramNode>& program_;
  const std::filesystem::path root_;
  const Sources sources_;
  Mistakes& mistakes_;
};

void Comparison::Equal(const FilePlace& place, const std::string& what, const std::string& described,
                       const std::string& of_program) {
  if (described == of_program) return;
  mistakes_.Add(place,
                what + ": described as " + Quoted(described) + ", the program has " + Quoted(of_program));
}

void Comparison::CompareUsage(const Command& command, const ProgramCommand& program) {
  const std::string head = "Usage: ";
  const std::string end = "\r\n";
  const std::string none = "nothing";
  const std::string described = command.usage.has_value() ? head + *command.usage : none;
  std::string of_program = program.usage.value_or(none + end);
  if (of_program.size() >= end.size()) of_program.resize(of_program.size() - end.size());
  Equal(command.place, command.word + ": usage", described, of_program);
}

void Comparison::CompareCommands(const Node& node, const ProgramNode& program) {
  const bool is_root = node.words.empty();
  for (std::size_t i = 0; i < std::max(node.commands.size(), program.commands.size()); ++i) {
    if (i >= program.commands.size()) {
      mistakes_.Add(node.commands[i].place, "the program has no command " + Quoted(node.commands[i].word));
      continue;
    }
    const ProgramCommand& there = program.commands[i];
    if (i >= node.commands.size()) {
      mistakes_.Add(node.place, "command " + Quoted(there.word) + " is not described");
      continue;
    }
    const Command& here = node.commands[i];
    Equal(here.place, "command, in the program's order", here.word, there.word);
    Equal(here.place, here.word + ": help", here.help, there.help);
    Equal(here.place, here.word + ": text-word", here.text_word, there.text_word);
    Equal(here.place, here.word + ": text-help", here.text_help, there.text_help);
    if (!is_root) CompareUsage(here, there);
  }
}

// At least one command of a class with a frame writes its documents in it.
void Comparison::CompareFrame(const Node& node, const ProgramNode& program) {
  if (program.frame.empty()) return;
  for (const Command& command : node.commands) {
    if (!command.document.has_value() || command.document->structure != program.frame[0]) continue;
    for (const Field& field : command.document->fields) {
      const bool has_text = command.document->report.empty() || field.fields[0].name == program.frame[3];
      if (field.name == program.frame[1] && field.list_structure == program.frame[2] && has_text) return;
    }
  }
  mistakes_.Add(node.place, "no document has the frame of the program: " + Join(program.frame, ", "));
}

// The source that defines the node's class, and those that the description names.
std::vector<std::string> Comparison::SourcesOf(const Node& node) const {
  std::vector<std::string> files = node.sources;
  for (const std::string& file : files) {
    if (!sources_.contains(file)) mistakes_.Add(node.place, "sources: there is no " + file);
  }
  const std::string definition = "NodeClass " + node.node_class + "() {";
  for (const auto& [file, texts] : sources_) {
    if (ReadWholeFile(root_ / file).find(definition) != std::string::npos) files.push_back(file);
  }
  return files;
}

bool Comparison::IsInSources(const std::string& message) const {
  return std::any_of(sources_.begin(), sources_.end(),
                     [&message](const auto& source) { return source.second.messages.contains(message); });
}

void Comparison::CompareMessages(const Node& node, const ProgramNode& program) {
  const auto describes = [&node](const std::string& message) {
    return std::any_of(node.statuses.begin(), node.statuses.end(),
                       [&message](const NodeStatus& status) { return status.message == message; });
  };
  for (const auto& row : program.messages) {
    const unsigned number = row.first;
    const std::string& message = row.second;
    if (number == 0) continue;
    const auto same = [&](const NodeStatus& status) {
      return status.number == number && status.message == message;
    };
    if (std::any_of(node.statuses.begin(), node.statuses.end(), same)) continue;
    mistakes_.Add(node.place,
                  "statuses: not described: " + Quoted(message) + " (status " + std::to_string(number) + ")");
  }
  for (const std::string& file : SourcesOf(node)) {
    const auto source = sources_.find(file);
    if (source == sources_.end()) continue;
    for (const std::string& message : source->second.messages) {
      if (!describes(message))
        mistakes_.Add(node.place, "statuses: not described: " + Quoted(message) + " of " + file);
    }
    for (const std::string& name : source->second.status_names) {
      const auto same = [&name](const NodeStatus& status) { return status.id == IdOf(name); };
      if (name != "kSuccess" && reference_.statuses.contains(IdOf(name)) &&
          std::none_of(node.statuses.begin(), node.statuses.end(), same)) {
        mistakes_.Add(node.place, "statuses: not described: " + IdOf(name) + ", named in " + file);
      }
    }
  }
  for (const NodeStatus& status : node.statuses) {
    if (!IsInSources(status.message)) {
      mistakes_.Add(status.place, "no source of the program has the message " + Quoted(status.message));
    }
  }
}

void Comparison::CompareOptions(const Node& node) {
  std::set<std::pair<std::string, std::string>> described;
  for (const Command& command : node.commands) {
    for (const Option& option : command.options) described.emplace(option.long_name, option.short_name);
  }
  std::set<std::pair<std::string, std::string>> of_program;
  for (const std::string& file : SourcesOf(node)) {
    const auto source = sources_.find(file);
    if (source != sources_.end())
      of_program.insert(source->second.options.begin(), source->second.options.end());
  }
  for (const auto& [long_name, short_name] : of_program) {
    if (described.contains({long_name, short_name})) continue;
    mistakes_.Add(node.place, "options: not described: " + long_name + ", " + short_name);
  }
  for (const Command& command : node.commands) {
    for (const Option& option : command.options) {
      if (of_program.contains({option.long_name, option.short_name})) continue;
      mistakes_.Add(option.place,
                    "the node's sources have no option " + option.long_name + ", " + option.short_name);
    }
  }
}

void Comparison::CompareNode(const Node& node, const ProgramNode& program) {
  CompareCommands(node, program);
  if (node.words.empty()) return;
  Equal(node.place, "help", node.help, program.help);
  Equal(node.place, "class", node.node_class, program.node_class);
  Equal(node.place, "help-head", node.help_head, program.help_head);
  Equal(node.place, "help-leaf", node.help_leaf, program.help_leaf);
  CompareFrame(node, program);
  CompareMessages(node, program);
  CompareOptions(node);
}

// The numbers of messages.yaml are those of the enumeration.
void Comparison::CompareStatusKinds() {
  const auto numbers = EnumeratorsOf(ReadWholeFile(root_ / "src/framework/status.h"));
  std::map<std::string, unsigned> by_id;
  for (const auto& [name, number] : numbers) by_id[IdOf(name)] = number;
  for (const auto& [id, kind] : reference_.statuses) {
    if (id == "unknown") continue;
    const auto found = by_id.find(id);
    if (found == by_id.end()) {
      mistakes_.Add(kind.place, "status.h has no status of this name: " + id);
    } else if (found->second != kind.number) {
      mistakes_.Add(kind.place, id + ": status.h has the number " + std::to_string(found->second));
    }
    if (!kind.message.empty() && !IsInSources(kind.message)) {
      mistakes_.Add(kind.place, "no source of the program has the message " + Quoted(kind.message));
    }
  }
}

// Every message of the sources is described by some node.
void Comparison::CompareAllSources() {
  std::set<std::string> described = {kUnknownMessage};
  std::set<std::string> options;
  for (const Node& node : reference_.nodes) {
    for (const NodeStatus& status : node.statuses) described.insert(status.message);
    for (const Command& command : node.commands) {
      for (const Option& option : command.options) options.insert(option.long_name);
    }
  }
  for (const auto& [file, texts] : sources_) {
    for (const std::string& message : texts.messages) {
      if (!described.contains(message))
        mistakes_.Add({file, 1}, "no node describes the message " + Quoted(message));
    }
    for (const auto& [long_name, short_name] : texts.options) {
      if (!options.contains(long_name)) mistakes_.Add({file, 1}, "no node describes the option " + long_name);
    }
  }
}

void Comparison::Run(bool partial) {
  std::map<std::string, const Node*> described;
  for (const Node& node : reference_.nodes) described[Join(node.words, " ")] = &node;
  std::set<std::string> of_program;
  for (const ProgramNode& node : program_) {
    of_program.insert(node.words);
    const auto found = described.find(node.words);
    if (found != described.end()) {
      CompareNode(*found->second, node);
    } else if (!partial) {
      mistakes_.Add({"nodes", 1}, "node " + Quoted(node.words) + " is not described");
    }
  }
  for (const Node& node : reference_.nodes) {
    if (!of_program.contains(Join(node.words, " "))) {
      mistakes_.Add(node.place, "the program has no node " + Quoted(Join(node.words, " ")));
    }
  }
  CompareStatusKinds();
  if (!partial) CompareAllSources();
}

}  // namespace

void Compare(const Reference& reference, const std::vector<ProgramNode>& program,
             const std::filesystem::path& root, bool partial, Mistakes& mistakes) {
  Comparison(reference, program, root, mistakes).Run(partial);
}

}  // namespace reference
