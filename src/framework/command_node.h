// The shape that every node class shares: its commands and sub-nodes as rows of tables, and all that follows
// from the rows.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/command_run.h"
#include "framework/multiple_cmds_processor.h"
#include "framework/report_frame.h"
#include "framework/status.h"
#include "framework/table.h"

// One command of a class, in both its forms: `word` prints XML, `word` with "cli" appended prints text and
// has the usage. The commands' plain forms are the class's first children; `help` and the text forms follow.
// A child's usage index is its place.
struct CommandRow {
  const char* word;
  const char* description;
  const char* usage;  // what a person reads after "?", a help word or wrong words; null: nothing
  StatusCode (*run)(CommandRun& run);  // does the work, writes one document, returns its status

  // Where a command departs from these rules.
  static constexpr std::uint32_t kItsPlace = UINT32_MAX;
  const char* cli_word = nullptr;
  const char* cli_description = nullptr;
  std::uint32_t usage_index = kItsPlace;  // of the plain form; `help` has the one after the greatest
  const char* function = nullptr;         // where `CmdWord` is not the word with a capital letter
};

// One sub-node of a class: how it is addressed and how it is made.
struct SubNode {
  const char* name;
  const char* switch_word;
  const char* description;
  std::unique_ptr<MultipleCmdsProcessor> (*make)(CmdProcessor* parent, const SubNode& self);
};

// What is particular to one node class.
struct NodeClass {
  const char* name;        // of the class, for the debug log
  const char* help_words;  // "Adapter info" in the head of the class's help
  Table<CommandRow> commands = {};
  Table<SubNode> sub_nodes = {};
  ReportFrame frame = {};  // of the report, for a class whose commands write one
  Table<StatusMessage> messages = {};
  const char* help_description = "list of available commands";
};

// How the node of a row is addressed.
CmdProcessor::Place PlaceOfNode(const SubNode& row);

// The nodes of the table if there is a debug log, which shows when each node is made and deleted: they are
// made together with their parent. Without one there are none here, and each is made when it is needed.
std::vector<std::unique_ptr<MultipleCmdsProcessor>> MakeNodesForLog(CmdProcessor& parent,
                                                                    const Table<SubNode>& rows);

class CommandNode : public MultipleCmdsProcessor {
 public:
  CommandNode(CmdProcessor* parent, const SubNode& self, const NodeClass& node_class);
  ~CommandNode() override;

  // Callback of a class's `help` leaf: lists the children. Unlike the generic list it shows hidden nodes.
  static StatusCode CmdHelp(CmdProcessor& node, Words& words);
  // Usage callback of `help` and the text forms: prints the text of the index, or the help for the index of
  // `help`. kNoSuchUsage for any other index.
  static StatusCode CmdUsage(CmdProcessor& node, Words& words, std::uint32_t index);

  // What is particular to the node: the reference is checked against it.
  const NodeClass& Class() const { return class_; }

 protected:
  void BuildChildren() override;
  Place PlaceOf(std::size_t index) const override;
  std::unique_ptr<CmdProcessor> MakeChild(std::size_t index) override;

 private:
  std::uint32_t HelpIndex() const;
  std::size_t HelpPlace() const { return class_.commands.size(); }
  std::size_t FirstSubNode() const { return 2 * class_.commands.size() + 1; }

  const NodeClass class_;
  std::vector<std::unique_ptr<MultipleCmdsProcessor>> sub_nodes_;
};

// Makes a node of the class: the `make` of a SubNode row.
template <NodeClass (*node_class)()>
std::unique_ptr<MultipleCmdsProcessor> MakeNode(CmdProcessor* parent, const SubNode& self) {
  return std::make_unique<CommandNode>(parent, self, node_class());
}
