#include "tools/json/program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

#include "tools/json/source.h"

namespace zfc_json {
namespace {

constexpr int kNotRun = 127;  // as a shell says it

// The path of zfcesxcli in the folder of this executable; empty when the system does not show that folder.
std::string ProgramPath() {
  std::array<char, PATH_MAX> own = {};
  const ssize_t length = readlink("/proc/self/exe", own.data(), own.size());
  if (length <= 0) return "";
  const std::string path(own.data(), static_cast<std::size_t>(length));
  return path.substr(0, path.find_last_of('/') + 1) + "zfcesxcli";
}

}  // namespace

Program::~Program() {
  if (output_ >= 0) close(output_);
}

std::string Program::Start(const tools::Words& words) {
  const std::string path = ProgramPath();
  if (path.empty()) return std::string("/proc/self/exe: ") + std::strerror(errno);
  if (access(path.c_str(), X_OK) != 0) return path + ": " + std::strerror(errno);
  std::vector<char*> arguments = {const_cast<char*>(path.c_str())};
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return std::string("no pipe: ") + std::strerror(errno);
  process_ = fork();
  if (process_ == 0) {
    if (dup2(ends[1], STDOUT_FILENO) >= 0) execv(path.c_str(), arguments.data());
    _exit(kNotRun);
  }
  const int failure = errno;
  close(ends[1]);
  output_ = ends[0];
  return process_ > 0 ? "" : std::string("no process: ") + std::strerror(failure);
}

std::string Program::Wait() {
  DescriptorSource rest(output_);
  std::array<char, 4096> dropped;
  while (rest.Read(dropped.data(), dropped.size()) > 0) {
  }
  int status = 0;
  while (waitpid(process_, &status, 0) < 0) {
    if (errno != EINTR) return std::string("zfcesxcli: ") + std::strerror(errno);
  }
  process_ = -1;
  if (WIFSIGNALED(status)) return "zfcesxcli was ended by signal " + std::to_string(WTERMSIG(status));
  if (WEXITSTATUS(status) == kNotRun) return "zfcesxcli could not be started (127)";
  if (WEXITSTATUS(status) != 0) return "zfcesxcli ended with " + std::to_string(WEXITSTATUS(status));
  return "";
}

}  // namespace zfc_json
