// The programs in the folder of this one.
#pragma once

#include <string>

#include "tools/common/arguments.h"

namespace zfc_lab {

// The folder of this program, with the slash at its end; empty when that is not to be had.
std::string OwnFolder();

// Runs a program in place of this one. Returns only where that fails, with the reason on standard error,
// where `command` names the command that wanted it: "zfc-lab run".
tools::ExitStatus Execute(const char* command, const std::string& program, const tools::Words& words);

}  // namespace zfc_lab
