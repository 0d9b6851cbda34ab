// zfc-lab run: the program against a lab host, with nothing of an earlier run in its way.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/faults.h"
#include "base/file.h"
#include "framework/device_library/harmless_text.h"
#include "recording/disk.h"
#include "tools/lab/command.h"
#include "tools/lab/memory.h"
#include "tools/lab/private_staging.h"
#include "tools/lab/sibling.h"

namespace zfc_lab {
namespace {

using tools::Words;

constexpr char kHelp[] =
    "Usage: zfc-lab run [OPTION...] [FILE] [-- WORD...]\n"
    "Runs zfcesxcli with these words, or its shell without any, against the host in FILE, or the built-in "
    "one.\n"
    "The exit status is that of zfcesxcli, or 1 when it can't be run.\n\n"
    "  -s, --state FILE          keep what commands change in FILE, and staged files in FILE.staged/\n"
    "                            (without it, both end with the run)\n"
    "  -f, --fault CALL=RESULT   make a library call give this result; CALL=RESULT:once for its next time\n"
    "                            alone (any number of times)\n"
    "      --trace               show each library call on standard error\n\n"
    "TORPI_LAB_HOST, _STATE, _FAULTS and _TRACE have no effect here. The staging folder is the run's own "
    "where\n"
    "the machine allows a mount namespace.\n\n"
    "  zfc-lab run -- -t adapter listcli\n"
    "  zfc-lab run lab.yaml --state s.yaml --fault TORPI_GetVpd=150 -- -t port -s vpd getcli FC_...\n";

constexpr char kName[] = "zfc-lab run";
constexpr char kLibrary[] = "libtorpifconly.so";

void Report(const std::string& text) {
  std::fprintf(stderr, "%s: %s\n", kName, Harmless(text).c_str());
}

// Why the library in this folder must not be used, or an empty text. An installation may have the library of
// real adapters in the same place: only the simulated one knows the variables of the lab.
std::string CheckLibrary(const std::string& folder) {
  const std::string path = folder + kLibrary;
  std::string content;
  if (lab::ReadFile(path.c_str(), content) != lab::FileResult::kRead) {
    return path + ": can't be read: " + std::strerror(errno);
  }
  if (content.find("TORPI_LAB_HOST") != std::string::npos) return {};
  return path + ": not the simulated library; nothing was run";
}

// Sets the variable, or takes it away for an empty value.
void SetOrRemove(const char* name, const std::string& value) {
  if (value.empty()) {
    unsetenv(name);
  } else {
    SetVariable(name, value);
  }
}

// Says why the run has no staging folder of its own, and what follows.
void ReportStaging(const std::string& wrong) {
  struct stat info {};
  const bool there = stat(kStagingFolder, &info) == 0 && S_ISDIR(info.st_mode);
  const std::string folder = kStagingFolder;
  Report("no private staging folder (" + wrong + "); " +
         (there ? "staged files go to " + folder
                : "commands with staged files fail until someone does: sudo mkdir -p -m 777 " + folder));
}

std::string Joined(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ",") + word;
  return text;
}

tools::ExitStatus Run(const Words& words) {
  // The first "--" divides the words: later ones are the program's.
  const auto division = std::find(words.begin(), words.end(), "--");
  const Words own(words.begin(), division);
  const Words of_program(division == words.end() ? division : division + 1, words.end());

  tools::Arguments arguments(kName, own,
                             {{"--state", "-s", "FILE"}, {"--fault", "-f", "CALL=RESULT"}, {"--trace"}});
  if (!arguments.Good()) return tools::kWrongUsage;
  if (arguments.Operands().size() > 1) {
    return arguments.Refuse("expected one host file; the words of zfcesxcli follow after '--'");
  }
  const std::string faults = Joined(arguments.Values("--fault"));
  if (const std::string wrong = lab::FaultQueue().AddList(faults); !wrong.empty()) {
    return arguments.Refuse("--fault: " + wrong);
  }
  const std::string* const state = arguments.Value("--state");
  if (state != nullptr && state->empty()) return arguments.Refuse("--state: expected the name of a file");

  const std::string folder = OwnFolder();  // ahead of the mount namespace, in which it may have no name
  const std::string libraries = folder + "../lib/";
  if (const std::string wrong = CheckLibrary(libraries); !wrong.empty()) {
    Report(wrong);
    return tools::kMistake;
  }
  SetOrRemove("LD_LIBRARY_PATH", libraries);
  SetOrRemove("TORPI_LAB_HOST", arguments.Operands().empty() ? "" : arguments.Operands()[0]);
  SetOrRemove("TORPI_LAB_STATE", state == nullptr ? "" : *state);
  SetOrRemove("TORPI_LAB_FAULTS", faults);
  SetOrRemove("TORPI_LAB_TRACE", arguments.Has("--trace") ? "/dev/stderr" : "");
  const std::string staged = state == nullptr ? "" : *state + ".staged";
  // A new folder's name is on the disk before what is staged in it.
  if (!staged.empty() &&
      (mkdir(staged.c_str(), 0775) == 0 ? !recording::SyncFolderOf(staged) : errno != EEXIST)) {
    Report(staged + ": can't be made: " + std::strerror(errno));
    return tools::kMistake;
  }
  if (const std::string wrong = MakeStagingPrivate(staged); !wrong.empty()) ReportStaging(wrong);
  return Execute(kName, folder + "zfcesxcli", of_program);
}

}  // namespace

const Command kRun = {"run", "run zfcesxcli against a lab host", kHelp, Run};

}  // namespace zfc_lab
