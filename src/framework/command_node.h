// The shape that every node class shares, from its tables to its help.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "framework/multiple_cmds_processor.h"
#include "framework/report.h"

class CommandNode;

// One leaf of a class. Plain leaves have no usage callback: their failure stands in the document alone.
struct Leaf {
  const char* name;
  std::uint32_t usage_index;
  const char* description;
  CmdProcessor::Callback execute;
  CmdProcessor::UsageCallback usage = nullptr;
};

struct UsageText {
  std::uint32_t index;
  const char* text;
};

// One sub-node of a class: how it is addressed and how it is made.
struct SubNode {
  const char* name;
  const char* switch_word;
  const char* description;
  std::unique_ptr<MultipleCmdsProcessor> (*make)(CmdProcessor* parent, const SubNode& self);
};

// What is particular to one node class. The leaf that runs CommandNode::CmdHelp gives the usage index of the
// help.
struct NodeClass {
  const char* name;        // of the class, for the debug log
  const char* help_words;  // "Adapter info" in the head of the class's help
  std::span<const Leaf> leaves;
  std::span<const UsageText> usage;
  std::span<const SubNode> sub_nodes = {};
};

class CommandNode : public MultipleCmdsProcessor {
 public:
  // Creates the class's sub-nodes; the leaves come into being when something first looks at them.
  CommandNode(CmdProcessor* parent, const SubNode& self, const NodeClass& node_class);
  ~CommandNode() override;

  // Callback of a class's `help` leaf: lists the children. Unlike the generic list it shows hidden nodes.
  static StatusCode CmdHelp(CmdProcessor& node, Words& words);
  // Usage callback of a class's leaves: prints the text of the index, or the help for the index of `help`.
  // kNoSuchUsage for any other index.
  static StatusCode CmdUsage(CmdProcessor& node, Words& words, std::uint32_t index);

 protected:
  void BuildChildren() override;

 private:
  const NodeClass& class_;
  std::vector<std::unique_ptr<MultipleCmdsProcessor>> sub_nodes_;
};

// Makes a node of class Node: the `make` of a SubNode row.
template <class Node>
std::unique_ptr<MultipleCmdsProcessor> MakeNode(CmdProcessor* parent, const SubNode& self) {
  return std::make_unique<Node>(parent, self);
}

// A command: does the work and writes one document through `out` in the given mode.
using Command = StatusCode (*)(Serializer& out, Words& words, OutputMode mode);

// The two callbacks of a command: its plain form writes XML, its "...cli" form writes text.
template <Command command>
StatusCode InXml(CmdProcessor& node, Words& words) {
  return command(node, words, OUTPUT_XML);
}
template <Command command>
StatusCode InText(CmdProcessor& node, Words& words) {
  return command(node, words, OUTPUT_CLI);
}
