// zfc-lab reboot: a restart of the host, played on a state file.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "framework/device_library/harmless_text.h"
#include "lab.h"
#include "state/reboot.h"
#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr char kHelp[] =
    "Usage: zfc-lab reboot STATE [FILE]\n"
    "Plays a restart of the host in FILE, or of the built-in one, whose changes the state file STATE keeps: "
    "what\n"
    "was waiting for it takes effect, what lasts for one run ends, counters begin at zero, and no reboot is\n"
    "required any more. docs/lab-host.md has the table of what it changes.\n";

constexpr char kName[] = "zfc-lab reboot";

std::string Play(const std::string& state, const std::string& file) {
  // A name that is misspelt would give a state of its own.
  if (access(state.c_str(), F_OK) != 0) return state + ": can't be read: " + std::strerror(errno);
  lab::Host host;
  lab::Host first;
  std::string wrong = lab::LoadHostFile(file, host);
  if (wrong.empty()) wrong = lab::LoadHostFile(file, first);
  if (!wrong.empty()) return wrong;
  return lab::StateFile(state).Change(host, [&first](lab::Host& changed) { lab::Reboot(changed, first); });
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments(kName, words, {});
  if (!arguments.Good()) return tools::kWrongUsage;
  const tools::Words& operands = arguments.Operands();
  if (operands.empty() || operands.size() > 2) {
    return arguments.Refuse("expected a state file, and at most one host file");
  }
  const std::string wrong = Play(operands[0], operands.size() > 1 ? operands[1] : "");
  if (wrong.empty()) return tools::kGood;
  std::fprintf(stderr, "%s\n", Harmless(wrong, LineEnds::kKept).c_str());
  return tools::kMistake;
}

}  // namespace

const Command kReboot = {"reboot", "play a restart of the host on a state file", kHelp, Run};

}  // namespace zfc_lab
