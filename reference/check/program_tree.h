// The command tree of the program as plain records, so that what compares it with the descriptions needs
// nothing of the program.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace reference {

struct ProgramCommand {
  std::string word;
  std::string help;
  std::string text_word;
  std::string text_help;
  std::optional<std::string> usage;
};

struct ProgramNode {
  std::string words;  // "-t port -s dmi"; empty for the root
  std::string help;
  std::string node_class;
  std::string help_head;
  std::string help_leaf;
  std::vector<ProgramCommand> commands;
  std::vector<std::pair<unsigned, std::string>> messages;
  std::vector<std::string> frame;  // structure, field, structure of the list, field of the text; or nothing
};

// The root first, a node ahead of its sub-nodes.
std::vector<ProgramNode> ReadProgramTree();

}  // namespace reference
