// zfc-lab diff: what changed between two hosts.
#include <cstdio>

#include "framework/device_library/harmless_text.h"
#include "tools/common/new_file.h"
#include "tools/lab/command.h"
#include "tools/lab/diff/hosts.h"
#include "tools/lab/load_host.h"

namespace zfc_lab {
namespace {

constexpr const char* kName = "zfc-lab diff";

tools::ExitStatus Print(const std::string& text) {
  const std::string failure = tools::WriteOutput("", text, false);
  if (failure.empty()) return tools::kGood;
  std::fprintf(stderr, "%s: %s\n", kName, Harmless(failure).c_str());
  return tools::kMistake;
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments(kName, words, {{"--json"}});
  if (!arguments.Good()) return tools::kWrongUsage;
  const tools::Words& files = arguments.Operands();
  if (files.size() != 2) return arguments.Refuse("expected two files, BEFORE and AFTER");
  if (files[0].empty() || files[1].empty())
    return arguments.Refuse("expected the name of a file, got an empty word");
  const auto before = LoadHost(kName, files[0]);
  const auto after = LoadHost(kName, files[1]);
  if (!before || !after) return tools::kMistake;
  const diff::Report report = diff::CompareHosts(*before, *after);
  const bool same = report.Changes().empty();
  const std::string text = arguments.Has("--json") ? report.Json()
                           : same                  ? "The hosts are the same.\n"
                                                   : report.Text();
  const tools::ExitStatus printed = Print(text);
  return same ? printed : tools::kMistake;
}

}  // namespace

const Command kDiff = {
    .word = "diff",
    .summary = "say what changed between two hosts",
    .help =
        "Usage: zfc-lab diff [--json] BEFORE AFTER\n"
        "Says what changed between two hosts, each a host file or a snapshot: links, modules, versions, "
        "counters,\n"
        "targets, LUNs, settings and refusals, sorted by adapter and port.\n\n"
        "  --json   an array of objects with adapter, port, target, lun, what, before and after\n\n"
        "Seconds since an event, and measured values that moved but a little, are no difference.\n"
        "Exit status: 0 the hosts are the same, 1 they differ or a file has a mistake, 2 wrong usage.\n",
    .run = &Run,
};

}  // namespace zfc_lab
