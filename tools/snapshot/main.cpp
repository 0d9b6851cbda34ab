// zfc-snapshot: reads a host and writes it as a file that the simulated device library plays back.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "framework/device_library/harmless_text.h"
#include "recording/recording_text.h"
#include "runtime/out_of_memory.h"
#include "tools/common/arguments.h"
#include "tools/common/new_file.h"
#include "tools/snapshot/anonymise.h"
#include "tools/snapshot/capture.h"

namespace {

constexpr const char* kProgram = "zfc-snapshot";

constexpr const char* kHelp =
    "Usage: zfc-snapshot [-o FILE] [--anonymise] [--with-rdp] [--force]\n"
    "Reads this host through its device library and writes a file that plays it back:\n"
    "TORPI_LAB_HOST=FILE zfcesxcli ... then shows what it shows here. Nothing is changed on the host.\n\n"
    "  -o, --output FILE  write FILE; without it, or with -, standard output\n"
    "  --anonymise        replace names, serial numbers and identifiers by made-up ones\n"
    "  --with-rdp         also read the diagnostic parameters of every link, which sends frames on it\n"
    "  --force            replace FILE if it is there\n"
    "  -h, --help         say this and do nothing else\n"
    "  --version          say the version and do nothing else\n\n"
    "A call of the device library takes the time that it takes: it can't be cut short from here.\n"
    "Exit status: 0 good, 1 nothing written or not everything read, 2 wrong usage.\n";

// What a host file may be at most.
constexpr std::size_t kLargestFile = 16u << 20;

// Keeps standard output for the snapshot: what the device library prints goes nowhere.
class OwnOutput {
 public:
  OwnOutput() : own_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) { Silence(); }

  bool IsOpen() const { return own_ >= 0; }

  // Gives it back for the time of write(), which must not call the library.
  template <class Write>
  auto While(Write write) {
    std::fflush(stdout);  // what the library left there
    dup2(own_, STDOUT_FILENO);
    auto result = write();
    Silence();
    return result;
  }

 private:
  static void Silence() {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) {
      close(STDOUT_FILENO);
    } else if (nowhere != STDOUT_FILENO) {
      dup2(nowhere, STDOUT_FILENO);
      close(nowhere);
    }
  }

  int own_;
};

[[noreturn]] void EndWithoutMemoryHere(void*) {
  constexpr std::string_view kMessage = "# zfc-snapshot: out of memory; nothing is written\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(tools::kMistake);
}

// A message is a remark of YAML: where one file takes standard output and standard error, as in a support
// bundle, it is still the snapshot.
void Say(const std::string& what) {
  std::fprintf(stderr, "# %s: %s\n", kProgram, Harmless(what).c_str());
}

tools::ExitStatus Snapshot(const tools::Arguments& arguments) {
  const std::string* const output = arguments.Value("--output");
  const std::string path = output != nullptr ? *output : "-";
  const bool force = arguments.Has("--force");
  // Before the host is read, which may take its time.
  if (path != "-" && !force && access(path.c_str(), F_OK) == 0) {
    Say(path + ": is there already; --force replaces it");
    return tools::kMistake;
  }

  OwnOutput own_output;
  if (!own_output.IsOpen() && path == "-") {
    Say("standard output is closed");
    return tools::kMistake;
  }
  std::vector<std::string> cut;
  recording::HostRecording host = snapshot::Capture({.with_rdp = arguments.Has("--with-rdp")}, cut);
  if (arguments.Has("--anonymise")) snapshot::Anonymise(host);
  const std::string text = recording::ToText(host);
  const std::string failure = own_output.While([&] { return tools::WriteOutput(path, text, force); });

  for (const std::string& what : cut) Say(what);
  if (text.size() > kLargestFile) {
    Say("the snapshot has " + std::to_string(text.size()) + " bytes, more than the " +
        std::to_string(kLargestFile) + " that the simulated library reads");
  }
  if (!failure.empty()) Say(failure);
  return failure.empty() && cut.empty() && text.size() <= kLargestFile ? tools::kGood : tools::kMistake;
}

}  // namespace

int main(int count, char** words) {
  const EndStep without_memory(&EndWithoutMemoryHere, nullptr);
  tools::Arguments arguments(kProgram, tools::Words(words + 1, words + count),
                             {{"--output", "-o", "FILE"},
                              {"--anonymise"},
                              {"--with-rdp"},
                              {"--force"},
                              {"--help", "-h"},
                              {"--version"}});
  if (!arguments.Good()) return tools::kWrongUsage;
  if (arguments.Has("--help")) {
    std::fputs(kHelp, stdout);
    return tools::kGood;
  }
  if (arguments.Has("--version")) {
    std::printf("%s %s\n", kProgram, ZFC_VERSION);
    return tools::kGood;
  }
  if (!arguments.Operands().empty()) {
    return arguments.Refuse("unexpected word '" + arguments.Operands()[0] + "'");
  }
  return Snapshot(arguments);
}
