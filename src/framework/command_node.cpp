#include "framework/command_node.h"

#include "framework/console.h"
#include "runtime/timing_scope.h"

CommandNode::CommandNode(CmdProcessor* parent, const SubNode& self, const NodeClass& node_class)
    : MultipleCmdsProcessor(
          parent, {.name = self.name, .switch_word = self.switch_word, .description = self.description}),
      class_(node_class) {
  const TimingScope scope(class_.name, TimedFunction::kConstructor);
  sub_nodes_.reserve(class_.sub_nodes.size());
  for (const SubNode& sub_node : class_.sub_nodes) sub_nodes_.push_back(sub_node.make(this, sub_node));
}

CommandNode::~CommandNode() {
  const TimingScope scope(class_.name, TimedFunction::kDestructor);
  for (auto& sub_node : sub_nodes_) sub_node.reset();  // in the order of their creation
}

void CommandNode::BuildChildren() {
  for (const Leaf& leaf : class_.leaves) {
    AddLeaf(std::make_unique<CmdProcessor>(
        this, Place{.name = leaf.name, .description = leaf.description, .usage_index = leaf.usage_index},
        Callbacks{.execute = leaf.execute, .usage = leaf.usage}));
  }
  for (const auto& sub_node : sub_nodes_) AddNode(sub_node.get());
}

StatusCode CommandNode::CmdHelp(CmdProcessor& node, Words& words) {
  auto& self = static_cast<CommandNode&>(node);
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
  const NodeClass& node_class = static_cast<CommandNode&>(node).class_;
  for (const UsageText& row : node_class.usage) {
    if (row.index != index) continue;
    ConsolePrint(kPrintText, "%s", row.text);
    return kSuccess;
  }
  for (const Leaf& leaf : node_class.leaves) {
    if (leaf.execute != &CmdHelp || leaf.usage_index != index) continue;
    Words no_words;
    return CmdHelp(node, no_words);
  }
  return kNoSuchUsage;
}
