#include "framework/shell.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>

#include "framework/command_line.h"
#include "framework/console.h"
#include "framework/run_flags.h"

namespace {

constexpr const char* kPrompt = "$";
constexpr int kLineBytes = 2048;  // a longer line is read in pieces, each a command of its own
constexpr int kSecondsToBreak = 5;

// Prints the prompt and waits for input. SIGQUIT is held back meanwhile and let in by the wait alone: one
// that arrives right after the prompt interrupts it too. Returns false when SIGQUIT asks for a fresh prompt.
bool PromptForLine() {
  sigset_t quit;
  sigset_t signals;
  sigemptyset(&quit);
  sigaddset(&quit, SIGQUIT);
  sigprocmask(SIG_BLOCK, &quit, &signals);
  gRunFlags &= ~std::uint32_t{RUN_FLAG_BREAK};
  ConsolePrint(kPrintPrompt, "%s>", kPrompt);
  std::fflush(stdout);
  pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
  ppoll(&input, 1, nullptr, &signals);
  sigprocmask(SIG_SETMASK, &signals, nullptr);
  return !RunFlagIsSet(RUN_FLAG_BREAK);
}

// Gives a signal that interrupted the read up to five seconds to show in the run flags.
void WaitForBreak() {
  for (int second = 0; second < kSecondsToBreak; ++second) {
    if (RunFlagIsSet(RUN_FLAG_QUIT) || RunFlagIsSet(RUN_FLAG_BREAK)) return;
    sleep(1);
  }
}

// Splits one line as read into words. False when there is nothing to run.
bool ReadWords(char* line, Words& words) {
  if (line[0] == '\0') return false;
  MirrorToLogFile(line);
  const std::size_t length = std::strlen(line);
  if (line[length - 1] == '\n') line[length - 1] = '\0';
  if (!ParseInputLine(line, words)) {
    ConsolePrint(kPrintError, "Error parsing command input string!\n");
    return false;
  }
  return !words.empty();
}

}  // namespace

StatusCode RunShell(MultipleCmdsProcessor& node) {
  // Unbuffered: the wait for input cannot see what the stream has already read.
  std::setvbuf(stdin, nullptr, _IONBF, 0);
  for (;;) {
    if (!PromptForLine()) continue;
    char line[kLineBytes];
    if (std::fgets(line, kLineBytes, stdin) == nullptr) {
      WaitForBreak();
      if (RunFlagIsSet(RUN_FLAG_QUIT)) return kSuccess;
      if (RunFlagIsSet(RUN_FLAG_BREAK)) {
        std::clearerr(stdin);
        continue;
      }
      ConsolePrint(kPrintError, "Unknown input problem!\r\nQuit...\r\n");
      return kWrongWordCount;
    }
    Words words;
    if (!ReadWords(line, words)) continue;
    const StatusCode status = DispatchWords(node, words);
    if (status == kLeaveShell || status == kQuit || RunFlagIsSet(RUN_FLAG_QUIT)) return kSuccess;
  }
}
