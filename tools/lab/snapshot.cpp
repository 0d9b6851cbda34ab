// zfc-lab snapshot: the zfc-snapshot beside this executable.
#include "tools/lab/command.h"
#include "tools/lab/sibling.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab snapshot [-o FILE] [--anonymise] [--with-rdp] [--force]\n"
    "Runs the zfc-snapshot beside zfc-lab: reads the host of the device library that it loads, a lab host "
    "where\n"
    "TORPI_LAB_HOST names one, and writes a file that plays it back. 'zfc-snapshot --help' says more.\n";

tools::ExitStatus RunSnapshot(const tools::Words& words) {
  return Execute("zfc-lab snapshot", OwnFolder() + "zfc-snapshot", words);
}

}  // namespace

const Command kSnapshot = {"snapshot", "read a host and write a file that plays it back", kHelp, RunSnapshot};

}  // namespace zfc_lab
