#include "framework/signals.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "framework/run_flags.h"
#include "runtime/debug_log.h"

namespace {

void OnSignal(int number) {
  const int interrupted_errno = errno;
  if (number == SIGQUIT) {
    gRunFlags |= RUN_FLAG_BREAK;
    DebugLog("\r\nBreaking...\r\n");
  } else if (number == SIGINT || number == SIGABRT || number == SIGTERM) {
    DebugLog("\r\nClosing...\r\n");
    std::signal(SIGINT, SIG_DFL);
    kill(getpid(), SIGINT);
  }
  errno = interrupted_errno;
}

}  // namespace

void InstallSignalHandler() {
  // Without SA_RESTART: a read at the prompt has to end when SIGQUIT arrives.
  struct sigaction action = {};  // no signal is blocked meanwhile
  action.sa_handler = &OnSignal;
  for (const int number : {SIGINT, SIGABRT, SIGTERM, SIGQUIT}) sigaction(number, &action, nullptr);
}
