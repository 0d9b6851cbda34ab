// zfc-lab snapshot: the zfc-snapshot beside this executable.
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab snapshot [-o FILE] [--anonymise] [--with-rdp] [--force]\n"
    "Runs the zfc-snapshot beside zfc-lab: reads the host of the device library that it loads, a lab host "
    "where\n"
    "TORPI_LAB_HOST names one, and writes a file that plays it back. 'zfc-snapshot --help' says more.\n";

// The path of a program in the folder of this one; empty when that is not to be had.
std::string Sibling(const char* name) {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path) return {};
  const std::string own(path, static_cast<std::size_t>(length));
  return own.substr(0, own.rfind('/') + 1) + name;
}

tools::ExitStatus RunSnapshot(const tools::Words& words) {
  std::string program = Sibling("zfc-snapshot");
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
