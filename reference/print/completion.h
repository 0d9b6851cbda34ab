// Completion of command lines for bash and zsh.
#pragma once

#include <map>
#include <string>

#include "reference/description.h"

namespace reference {

// What both shells look up, by keys in lower case:
//
//   "nodes NODE"             the nodes below it, with the switch ahead of each: "-s dmi -s fec"; NODE "" is
//   the top "commands NODE"          words of its commands "arguments NODE WORD"    a rule for each argument
//   in its place "options NODE WORD"      names of options "value NODE WORD NAME"   a rule for the option's
//   value
//
// NODE is its name without switches, "port dmi". A rule is "@adapters", "@ports", "@targets" or "@luns" for
// what `list` prints, "@files", "=A|B" for words, or "-" for what cannot be known.
std::map<std::string, std::string> CompletionTable(const Reference& reference);

// The scripts of reference/completion/ with the table in its place.
std::string BashCompletion(const Reference& reference, const std::string& script);
std::string ZshCompletion(const Reference& reference, const std::string& script);

}  // namespace reference
