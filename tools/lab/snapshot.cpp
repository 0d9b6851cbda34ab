// zfc-lab snapshot: the zfc-snapshot beside this executable.
#include <cstdlib>
#include <string>

#include "tools/lab/command.h"
#include "tools/lab/memory.h"
#include "tools/lab/sibling.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab snapshot [-o FILE] [--anonymise] [--with-rdp] [--force]\n"
    "Runs the zfc-snapshot beside zfc-lab with the simulated library: reads the host that TORPI_LAB_HOST\n"
    "names, or the built-in one, and writes a file that plays it back. LD_LIBRARY_PATH may name another\n"
    "library. 'zfc-snapshot --help' says more.\n";

tools::ExitStatus RunSnapshot(const tools::Words& words) {
  const std::string folder = OwnFolder();
  // In an installation the program is a link out of the lab, and would look for the library there.
  if (std::getenv("LD_LIBRARY_PATH") == nullptr) SetVariable("LD_LIBRARY_PATH", folder + "../lib/");
  return Execute("zfc-lab snapshot", folder + "zfc-snapshot", words);
}

}  // namespace

const Command kSnapshot = {"snapshot", "read a host and write a file that plays it back", kHelp, RunSnapshot};

}  // namespace zfc_lab
