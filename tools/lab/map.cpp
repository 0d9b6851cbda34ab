// zfc-lab map: a picture of a host.
#include <cstdio>
#include <cstdlib>

#include "framework/device_library/harmless_text.h"
#include "tools/common/new_file.h"
#include "tools/lab/command.h"
#include "tools/lab/load_host.h"
#include "tools/lab/map/host_view.h"
#include "tools/lab/map/picture.h"
#include "tools/lab/map/text_tree.h"
#include "tools/lab/view/text.h"

namespace zfc_lab {
namespace {

constexpr const char* kName = "zfc-lab map";

// What the picture calls the host: the file without its folders.
std::string HostName(std::string file) {
  if (file.empty()) {
    const char* const variable = std::getenv("TORPI_LAB_HOST");
    file = variable == nullptr ? "" : variable;
  }
  if (file.empty()) return "Built-in host";
  return view::CleanText(file.substr(file.find_last_of('/') + 1));
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments(kName, words, {{"--output", "-o", "FILE"}, {"--text"}, {"--force"}});
  if (!arguments.Good()) return tools::kWrongUsage;
  const tools::Words& files = arguments.Operands();
  if (files.size() > 1) return arguments.Refuse("expected one file at most");
  if (!files.empty() && files[0].empty())
    return arguments.Refuse("expected the name of a file, got an empty word");
  const std::string file = files.empty() ? "" : files[0];
  const std::string name = HostName(file);
  const auto host = LoadHost(kName, file);
  if (!host) return tools::kMistake;
  const map::HostView shown = map::BuildView(*host);
  const std::string* const output = arguments.Value("--output");
  const std::string failure = tools::WriteOutput(
      output == nullptr ? "" : *output,
      arguments.Has("--text") ? map::TextTree(shown) : map::Picture(shown, name), arguments.Has("--force"));
  if (failure.empty()) return tools::kGood;
  std::fprintf(stderr, "%s: %s\n", kName, Harmless(failure).c_str());
  return tools::kMistake;
}

}  // namespace

const Command kMap = {
    .word = "map",
    .summary = "draw a picture of a host",
    .help =
        "Usage: zfc-lab map [-o FILE] [--text] [--force] [FILE]\n"
        "Draws a host, of a host file or a snapshot: adapters, ports with speed and health, fabric, targets "
        "and LUN\n"
        "counts, as one SVG picture for light and dark screens. Without FILE it is the host that "
        "TORPI_LAB_HOST\n"
        "names, or the built-in one.\n\n"
        "  -o, --output FILE   writes the picture to a file in place of standard output\n"
        "      --text          an indented text for a terminal in place of a picture\n"
        "      --force         replaces a file that is there\n\n"
        "Exit status: 0 good, 1 a mistake in a file or a file that can't be written, 2 wrong usage.\n",
    .run = &Run,
};

}  // namespace zfc_lab
