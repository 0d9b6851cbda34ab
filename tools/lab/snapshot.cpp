// zfc-lab snapshot: the zfc-snapshot beside this executable.
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab snapshot [-o FILE] [--anonymise] [--with-rdp] [--force]\n"
    "Runs the zfc-snapshot beside zfc-lab with the simulated library: reads the host that TORPI_LAB_HOST\n"
    "names, or the built-in one, and writes a file that plays it back. LD_LIBRARY_PATH may name another\n"
    "library. 'zfc-snapshot --help' says more.\n";

// The folder of this program, with the slash at its end; empty when that is not to be had.
std::string OwnFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path) return {};
  const std::string own(path, static_cast<std::size_t>(length));
  return own.substr(0, own.rfind('/') + 1);
}

tools::ExitStatus RunSnapshot(const tools::Words& words) {
  const std::string folder = OwnFolder();
  std::string program = folder.empty() ? "" : folder + "zfc-snapshot";
  // In an installation the program is a link out of the lab, and would look for the library there.
  const std::string libraries = folder + "../lib/";
  setenv("LD_LIBRARY_PATH", libraries.c_str(), 0);
  std::vector<std::string> kept(words);
  std::vector<char*> arguments = {program.data()};
  for (std::string& word : kept) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  execv(program.c_str(), arguments.data());
  std::fprintf(stderr, "zfc-lab snapshot: %s: can't be run: %s\n", program.c_str(), std::strerror(errno));
  return tools::kMistake;
}

}  // namespace

const Command kSnapshot = {"snapshot", "read a host and write a file that plays it back", kHelp, RunSnapshot};

}  // namespace zfc_lab
