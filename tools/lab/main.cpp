// zfc-lab: the lab's own command. Each command is in the file of its name.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "framework/device_library/harmless_text.h"
#include "tools/lab/command.h"
#include "tools/lab/memory.h"

namespace zfc_lab {
namespace {

constexpr const Command* kCommands[] = {
    &kRun, &kNew, &kCheck, &kReboot, &kSnapshot, &kDiff, &kMap, &kFlashImage,
};

void PrintHelp() {
  std::printf(
      "Usage: zfc-lab COMMAND [OPTION...] [WORD...]\n"
      "The lab host of zfcesxcli: check, run, change, picture and compare hosts without an adapter.\n\n"
      "Commands:\n");
  for (const Command* command : kCommands) std::printf("  %-12s %s\n", command->word, command->summary);
  std::printf(
      "\n'zfc-lab COMMAND --help' says more. Exit status: 0 good, 1 a mistake or a difference, "
      "2 wrong usage.\n");
}

const Command* FindCommand(const char* word) {
  for (const Command* command : kCommands) {
    if (std::strcmp(word, command->word) == 0) return command;
  }
  return nullptr;
}

// Whether help is asked for ahead of a "--", past which words belong to somebody else.
bool AsksForHelp(const tools::Words& words) {
  for (const std::string& word : words) {
    if (word == "--") return false;
    if (word == "--help" || word == "-h") return true;
  }
  return false;
}

int Run(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "zfc-lab: expected a command\nTry 'zfc-lab --help'.\n");
    return tools::kWrongUsage;
  }
  if (std::strcmp(arguments[1], "--help") == 0 || std::strcmp(arguments[1], "-h") == 0) {
    PrintHelp();
    return tools::kGood;
  }
  const Command* const command = FindCommand(arguments[1]);
  if (command == nullptr) {
    std::fprintf(stderr, "zfc-lab: unknown command '%s'\nTry 'zfc-lab --help'.\n",
                 Harmless(arguments[1]).c_str());
    return tools::kWrongUsage;
  }
  const tools::Words words(arguments + 2, arguments + count);
  if (AsksForHelp(words)) {
    std::fputs(command->help, stdout);
    return tools::kGood;
  }
  return command->run(words);
}

// Whether all that was printed has gone out; else says why not.
bool FinishOutput() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
  std::fprintf(stderr, "zfc-lab: standard output: can't be written: %s\n", std::strerror(errno));
  return false;
}

}  // namespace
}  // namespace zfc_lab

int main(int count, char** arguments) try {
  std::set_new_handler(nullptr);  // from here on what is unfinished is removed by those that a throw passes
  const int status = zfc_lab::Run(count, arguments);
  return zfc_lab::FinishOutput() || status != tools::kGood ? status : tools::kMistake;
} catch (const std::bad_alloc&) {
  zfc_lab::EndWithoutMemory();
}
