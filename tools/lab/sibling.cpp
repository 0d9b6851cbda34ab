#include "tools/lab/sibling.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <vector>

#include "framework/device_library/harmless_text.h"

namespace zfc_lab {

std::string OwnFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path) return {};
  const std::string own(path, static_cast<std::size_t>(length));
  return own.substr(0, own.rfind('/') + 1);
}

tools::ExitStatus Execute(const char* command, const std::string& program, const tools::Words& words) {
  std::vector<std::string> arguments = {program};
  arguments.insert(arguments.end(), words.begin(), words.end());
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execv(program.c_str(), pointers.data());
  std::fprintf(stderr, "%s: %s: can't be run: %s\n", command, Harmless(program).c_str(),
               std::strerror(errno));
  return tools::kMistake;
}

}  // namespace zfc_lab
