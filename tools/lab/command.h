// The commands of zfc-lab.
#pragma once

#include "tools/common/arguments.h"

namespace zfc_lab {

// One command: the file of its name in this folder defines it, kCommands in main.cpp lists it.
struct Command {
  const char* word;
  const char* summary;  // its line in `zfc-lab --help`
  const char* help;     // the whole text of `zfc-lab <word> --help`
  tools::ExitStatus (*run)(const tools::Words& words);
};

extern const Command kCheck;
extern const Command kDiff;
extern const Command kFlashImage;
extern const Command kMap;
extern const Command kNew;
extern const Command kReboot;
extern const Command kRun;
extern const Command kSnapshot;

}  // namespace zfc_lab
