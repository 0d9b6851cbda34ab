// The descriptor with which the host's shell, esxcli, learns the commands.
#pragma once

#include <string>

#include "reference/description.h"

namespace reference {

// esxcli/zfcesxcli.xml: a namespace for each node, and a command for each plain form that prints a document.
std::string DescriptorText(const Reference& reference);

// The parameters of a command as the descriptor names them: those of its words first.
struct Parameter {
  std::string name;        // "port", "fec-status"
  std::string short_name;  // one letter, which no other parameter of the command has
  std::string type;        // string or int
  bool required = false;
  std::string about;
  std::vector<std::string> constants;
  std::string option;  // "--fec-status"; empty for a word
};
std::vector<Parameter> ParametersOf(const Command& command);

// The line that the shell runs.
std::string ExecuteText(const Node& node, const Command& command);

}  // namespace reference
