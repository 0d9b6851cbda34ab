#include "framework/command_node.h"

#include <algorithm>
#include <string>
#include <utility>

#include "framework/console.h"
#include "framework/table.h"

namespace {

// The name of a command's functions in the debug log: "CmdGet", and with the ends of its other two functions
// "CmdGetCli" and "CmdGetCommon".
std::string FunctionOf(const CommandRow& row, const char* end) {
  std::string name = "Cmd";
  if (row.function != nullptr) {
    name += row.function;
  } else {
    name += row.word;
    name[3] = static_cast<char>(name[3] - 'a' + 'A');
  }
  return name + end;
}

// One form of a command.
class CommandLeaf : public CmdProcessor {
 public:
  CommandLeaf(CommandNode& node, const NodeClass& node_class, const CommandRow& row, OutputMode mode,
              Place place)
      : CmdProcessor(&node, std::move(place),
                     {.usage = mode == OUTPUT_CLI ? &CommandNode::CmdUsage : nullptr}),
        class_(node_class),
        row_(row),
        mode_(mode) {}

  // A command writes its document through its class's node.
  StatusCode Execute(Words& words) override {
    if (DebugMask() == 0) {
      CommandRun run(class_, "", *GetParent(), words, mode_);
      return row_.run(run);
    }
    const std::string form = FunctionOf(row_, mode_ == OUTPUT_CLI ? "Cli" : "");
    const std::string common = FunctionOf(row_, "Common");
    const TraceScope trace({class_.name, form.c_str()});
    CommandRun run(class_, form.c_str(), *GetParent(), words, mode_);
    const FunctionScope function(run, common.c_str());
    return row_.run(run);
  }

 private:
  const NodeClass& class_;
  const CommandRow row_;
  OutputMode mode_;
};

std::string CliWord(const CommandRow& row) {
  return row.cli_word != nullptr ? row.cli_word : std::string(row.word) + "cli";
}

// The usage index of the plain form of the row at `place`.
std::uint32_t PlainIndex(const CommandRow& row, std::size_t place) {
  return row.usage_index != CommandRow::kItsPlace ? row.usage_index : static_cast<std::uint32_t>(place);
}

}  // namespace

CmdProcessor::Place PlaceOfNode(const SubNode& row) {
  return {.name = row.name, .switch_word = row.switch_word, .description = row.description};
}

std::vector<std::unique_ptr<MultipleCmdsProcessor>> MakeNodesForLog(CmdProcessor& parent,
                                                                    const Table<SubNode>& rows) {
  std::vector<std::unique_ptr<MultipleCmdsProcessor>> nodes;
  if (DebugMask() == 0) return nodes;
  nodes.reserve(rows.size());
  for (const SubNode& row : rows) nodes.push_back(row.make(&parent, row));
  return nodes;
}

CommandNode::CommandNode(CmdProcessor* parent, const SubNode& self, const NodeClass& node_class)
    : MultipleCmdsProcessor(parent, PlaceOfNode(self)), class_(node_class) {
  const TimingScope scope(class_.name, TimedFunction::kConstructor);
  sub_nodes_ = MakeNodesForLog(*this, class_.sub_nodes);
}

CommandNode::~CommandNode() {
  const TimingScope scope(class_.name, TimedFunction::kDestructor);
  for (auto& sub_node : sub_nodes_) sub_node.reset();  // in the order of their creation
}

std::uint32_t CommandNode::HelpIndex() const {
  std::uint32_t next = 0;
  for (std::size_t place = 0; place < class_.commands.size(); ++place) {
    next = std::max(next, PlainIndex(class_.commands[place], place) + 1);
  }
  return next;
}

// The plain forms, the help, the text forms, the sub-nodes.
void CommandNode::BuildChildren() {
  AddUnmade(FirstSubNode() + (sub_nodes_.empty() ? class_.sub_nodes.size() : 0));
  for (const auto& sub_node : sub_nodes_) AddNode(sub_node.get());
}

CmdProcessor::Place CommandNode::PlaceOf(std::size_t index) const {
  if (index >= FirstSubNode()) return PlaceOfNode(class_.sub_nodes[index - FirstSubNode()]);
  if (index == HelpPlace()) {
    return {.name = "help", .description = class_.help_description, .usage_index = HelpIndex()};
  }
  if (index < HelpPlace()) {
    const CommandRow row = class_.commands[index];
    return {.name = row.word, .description = row.description, .usage_index = PlainIndex(row, index)};
  }
  const std::size_t place = index - HelpPlace() - 1;
  const CommandRow row = class_.commands[place];
  return {.name = CliWord(row),
          .description = row.cli_description != nullptr ? row.cli_description : row.description,
          .usage_index = HelpIndex() + 1 + static_cast<std::uint32_t>(place)};
}

std::unique_ptr<CmdProcessor> CommandNode::MakeChild(std::size_t index) {
  if (index >= FirstSubNode()) {
    const SubNode row = class_.sub_nodes[index - FirstSubNode()];
    return row.make(this, row);
  }
  if (index == HelpPlace()) {
    return std::make_unique<CmdProcessor>(this, PlaceOf(index),
                                          Callbacks{.execute = &CmdHelp, .usage = &CmdUsage});
  }
  const bool plain = index < HelpPlace();
  const CommandRow row = class_.commands[plain ? index : index - HelpPlace() - 1];
  return std::make_unique<CommandLeaf>(*this, class_, row, plain ? OUTPUT_XML : OUTPUT_CLI, PlaceOf(index));
}

StatusCode CommandNode::CmdHelp(CmdProcessor& node, Words& words) {
  auto& self = static_cast<CommandNode&>(node);
  const TraceScope trace({self.class_.name, __func__});
  ConsolePrint(kPrintHelpHead,
               "\r\nFollowing is the list of available commands in the %s command mode.\r\n"
               "For detailed information of each command, please type 'command ?'\r\n",
               self.class_.help_words);
  ConsolePrint(kPrintHelpNote, "All commands are case insensitive.\r\n\r\n");
  for (CmdProcessor* child : self.GetChildren()) {
    if (child->IsUsable() && child->IsExcluded(words) == kSuccess) PrintChild(*child);
  }
  return kSuccess;
}

StatusCode CommandNode::CmdUsage(CmdProcessor& node, Words&, std::uint32_t index) {
  auto& self = static_cast<CommandNode&>(node);
  const TraceScope trace({self.class_.name, "Usage"});
  const std::uint32_t help = self.HelpIndex();
  if (index == help) {
    Words no_words;
    return CmdHelp(node, no_words);
  }
  const std::uint32_t row = index - help - 1;  // beyond the table for an index below that of `help`
  if (row >= self.class_.commands.size()) return kNoSuchUsage;
  const char* const usage = self.class_.commands[row].usage;
  if (usage == nullptr) return kNoSuchUsage;
  ConsolePrint(kPrintText, "%s", usage);
  return kSuccess;
}
