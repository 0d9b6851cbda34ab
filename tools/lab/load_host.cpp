#include "tools/lab/load_host.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tools/lab/memory.h"
#include "tools/snapshot/capture.h"

namespace zfc_lab {
namespace {

// Keeps what is written to a descriptor until it goes out of scope.
class Held {
 public:
  explicit Held(int descriptor)
      : descriptor_(descriptor), kept_(dup(descriptor)), memory_(memfd_create("held", MFD_CLOEXEC)) {
    if (Good()) dup2(memory_, descriptor_);
  }
  ~Held() {
    GiveBack();
    if (memory_ >= 0) close(memory_);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  bool Good() const { return kept_ >= 0 && memory_ >= 0; }

  // Gives the descriptor back and returns what was written to it.
  std::string Release() {
    std::string text;
    if (!GiveBack() || memory_ < 0) return text;
    lseek(memory_, 0, SEEK_SET);
    char buffer[4096];
    for (ssize_t count; (count = read(memory_, buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  // False when it has been given back before. Takes no memory.
  bool GiveBack() {
    if (kept_ < 0) return false;
    dup2(kept_, descriptor_);
    close(kept_);
    kept_ = -1;
    return true;
  }

  int descriptor_;
  int kept_;
  int memory_;
};

// Gives closed standard streams a place, so that no other file becomes one of them. Writing there fails.
void FillStandardStreams() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

// The library is silent but for mistakes; a file is a host by itself.
void SetEnvironment(const std::string& file) {
  SetVariable("TORPI_LAB_QUIET", "1");
  SetVariable("TORPI_LAB_CHATTER", "0");
  unsetenv("TORPI_LAB_TRACE");  // it may go to standard error, where lines are mistakes
  if (file.empty()) return;
  SetVariable("TORPI_LAB_HOST", file);
  for (const char* name : {"TORPI_LAB_STATE", "TORPI_LAB_FAULTS", "TORPI_LAB_TIME"}) unsetenv(name);
}

}  // namespace

std::optional<recording::HostRecording> LoadHost(const char* program, const std::string& file) {
  SetEnvironment(file);
  FillStandardStreams();
  std::fflush(stdout);
  Held prints(STDOUT_FILENO);
  Held mistakes(STDERR_FILENO);
  if (!prints.Good() || !mistakes.Good()) {
    mistakes.Release();
    std::fprintf(stderr, "%s: no memory to read a host\n", program);
    return std::nullopt;
  }
  std::vector<std::string> cut;
  recording::HostRecording host = snapshot::Capture({}, cut);
  std::fflush(stdout);
  std::fflush(stderr);
  // The library says nothing of a good host: whatever it writes is a mistake, after which it has no adapters.
  const std::string text = mistakes.Release();
  std::fputs(text.c_str(), stderr);
  for (const std::string& sentence : cut) std::fprintf(stderr, "%s: %s\n", program, sentence.c_str());
  if (!text.empty()) return std::nullopt;
  return host;
}

}  // namespace zfc_lab
