// The program's own composition root, so that what is read is the tree that runs.
#define main RunProgram
#include "src/main.cpp"  // NOLINT(bugprone-suspicious-include)
#undef main

#include "reference/check/program_tree.h"

namespace reference {
namespace {

ProgramNode NodeOf(const CommandNode& node, const std::string& above) {
  const NodeClass& record = node.Class();
  ProgramNode read;
  read.words = above + (above.empty() ? "" : " ") + node.GetSwitch() + " " + node.GetName();
  read.help = node.GetDescription();
  read.node_class = record.name;
  read.help_head = record.help_words;
  read.help_leaf = record.help_description;
  for (const StatusMessage& row : record.messages) read.messages.emplace_back(row.code, row.text);
  if (record.frame.structure != nullptr) {
    read.frame = {record.frame.structure, record.frame.field, record.frame.list_structure,
                  record.frame.data_field};
  }
  for (const CommandRow& row : record.commands) {
    ProgramCommand command;
    if (row.usage != nullptr) command.usage = row.usage;
    read.commands.push_back(command);
  }
  return read;
}

// The words and texts of the commands are those of the children: plain forms, help, text forms.
void ReadLeaves(MultipleCmdsProcessor& node, ProgramNode& read) {
  const auto& children = node.GetChildren();
  const std::size_t count = read.commands.size();
  for (std::size_t i = 0; i < count; ++i) {
    read.commands[i].word = children[i]->GetName();
    read.commands[i].help = children[i]->GetDescription();
    read.commands[i].text_word = children[count + 1 + i]->GetName();
    read.commands[i].text_help = children[count + 1 + i]->GetDescription();
  }
}

void Read(MultipleCmdsProcessor& node, const std::string& above, std::vector<ProgramNode>& nodes) {
  for (CmdProcessor* const child : node.GetChildren()) {
    if (child->IsLeaf()) continue;
    auto& inner = static_cast<CommandNode&>(*child);
    nodes.push_back(NodeOf(inner, above));
    ReadLeaves(inner, nodes.back());
    Read(inner, std::string(nodes.back().words), nodes);
  }
}

// The root's commands have one form each; a name that the help does not show is another name of `help`.
ProgramNode RootOf(MultipleCmdsProcessor& root) {
  ProgramNode read;
  for (CmdProcessor* const child : root.GetChildren()) {
    if (!child->IsLeaf() || child->IsHidden()) continue;
    read.commands.push_back(
        {child->GetName(), child->GetDescription(), child->GetName(), child->GetDescription(), {}});
  }
  return read;
}

}  // namespace

std::vector<ProgramNode> ReadProgramTree() {
  std::vector<ProgramNode> nodes;
  MainCmdsProcessor* const root = GetMainProcessor();
  root->SetTopLevelNodes(TableOf<kTopLevelNodes>());
  Words no_words;
  if (root->Initialize(no_words) == kSuccess) {
    nodes.push_back(RootOf(*root));
    Read(*root, "", nodes);
  }
  root->Uninitialize(no_words);
  ReleaseMainProcessor();
  return nodes;
}

}  // namespace reference
