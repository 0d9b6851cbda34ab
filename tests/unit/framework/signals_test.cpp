#include "framework/signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "support/unit_run_flags.h"

namespace {

// Ends the process by a signal, in a process of its own. Whatever runs at an orderly exit would speak up.
[[noreturn]] void EndBy(int signal) {
  std::atexit([] { std::fputs("orderly exit\n", stderr); });
  InstallSignalHandler();
  std::raise(signal);
  std::fputs("survived\n", stderr);
  _exit(0);
}

TEST(SignalsDeathTest, EndTheProcessAtOnceByAnInterrupt) {
  for (const int signal : {SIGINT, SIGABRT, SIGTERM}) {
    EXPECT_EXIT(EndBy(signal), testing::KilledBySignal(SIGINT), "^$") << "signal " << signal;
  }
}

// In a process of its own too, so that the handler is not left behind.
TEST(SignalsDeathTest, QuitAsksForABreakAndNothingElse) {
  EXPECT_EXIT(
      {
        gRunFlags = RUN_FLAG_ENGINEERING;
        InstallSignalHandler();
        errno = ENOTTY;
        std::raise(SIGQUIT);
        const bool errno_stayed = errno == ENOTTY;
        _exit(errno_stayed && gRunFlags == (RUN_FLAG_ENGINEERING | RUN_FLAG_BREAK) ? 42 : 1);
      },
      testing::ExitedWithCode(42), "^$");
}

TEST(SignalsDeathTest, BreakCanComeAgain) {
  EXPECT_EXIT(
      {
        InstallSignalHandler();
        std::raise(SIGQUIT);
        gRunFlags = 0;
        std::raise(SIGQUIT);
        _exit(gRunFlags == RUN_FLAG_BREAK ? 42 : 1);
      },
      testing::ExitedWithCode(42), "^$");
}

}  // namespace
