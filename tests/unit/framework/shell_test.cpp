#include "framework/shell.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <pty.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "framework/console.h"
#include "framework/signals.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_files.h"
#include "support/unit_recording_node.h"
#include "support/unit_run_flags.h"
#include "support/unit_stdin_pipe.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr char kUnknownCommandText[] = "Unknown command or invalid target identifier!\r\n";

StatusCode Leave(CmdProcessor&, Words&) {
  return kLeaveShell;
}

StatusCode Quit(CmdProcessor&, Words&) {
  return kQuit;
}

StatusCode Fail(CmdProcessor&, Words& words) {
  return static_cast<StatusCode>(std::stoi(words.at(0)));
}

StatusCode SetFlags(CmdProcessor&, Words& words) {
  gRunFlags |= static_cast<std::uint32_t>(std::stoi(words.at(0)));
  return kSuccess;
}

StatusCode ShowFlags(CmdProcessor&, Words&) {
  ConsolePrint(kPrintText, "flags %u\n", gRunFlags.load());
  return kSuccess;
}

// Words are shown with a bar between two, so that blanks in a word are seen.
StatusCode Echo(CmdProcessor&, Words& words) {
  for (const std::string& word : words) ConsolePrint(kPrintText, "|%s", word.c_str());
  ConsolePrint(kPrintText, "|\n");
  return kSuccess;
}

class Shell : public testing::Test {
 protected:
  Shell() {
    node_.AddLeaf({.name = "leave"}, {.execute = &Leave});
    node_.AddLeaf({.name = "q"}, {.execute = &Quit});
    node_.AddLeaf({.name = "fail"}, {.execute = &Fail});
    node_.AddLeaf({.name = "set"}, {.execute = &SetFlags});
    node_.AddLeaf({.name = "flags"}, {.execute = &ShowFlags});
    node_.AddLeaf({.name = "echo"}, {.execute = &Echo});
  }
  ~Shell() override { CloseLogMirror(); }

  // Runs the shell against a user who types `text` and then goes away. Returns what it prints.
  std::string Run(std::string_view text) {
    StdinPipe typed(text);
    typed.CloseInput();
    return PrintedBy([&] { status_ = RunShell(node_); });
  }

  ScopedRunFlags flags_{0};
  ScratchFolder folder_;
  RecordingNode node_;
  StatusCode status_ = kNoCallback;
};

TEST_F(Shell, PromptsAndQuits) {
  EXPECT_EQ(Run("q\n"), "$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Shell, EndsOnCode9Too) {
  EXPECT_EQ(Run("leave\nq\n"), "$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Shell, GoesOnAfterAnyOtherCode) {
  EXPECT_EQ(Run("fail 1\nfail 4\nfail 7\nfail 8\nfail 11\nfail 60\nq\n"), "$>$>$>$>$>$>$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Shell, RunsEachLineAsACommand) {
  EXPECT_EQ(Run("echo a b\nECHO c\nq\n"), "$>|a|b|\n$>|c|\n$>");
}

TEST_F(Shell, KeepsQuotedBlanks) {
  EXPECT_EQ(Run("echo \"my file\" \"\"\nq\n"), "$>|my file||\n$>");
}

TEST_F(Shell, TakesLinesWithACarriageReturn) {
  EXPECT_EQ(Run("echo a\r\nq\r\n"), "$>|a|\n$>");
}

TEST_F(Shell, PromptsAgainForALineWithoutWords) {
  EXPECT_EQ(Run("\n   \n\t\r\n\nq\n"), "$>$>$>$>$>");
}

TEST_F(Shell, PromptsAgainForALineThatBeginsWithAZeroByte) {
  using std::string_view_literals::operator""sv;
  EXPECT_EQ(Run("\0echo a\nq\n"sv), "$>$>");
}

TEST_F(Shell, RefusesAnUnterminatedQuoteAndGoesOn) {
  EXPECT_EQ(Run("echo \"a\necho b\nq\n"), "$>Error parsing command input string!\n$>|b|\n$>");
}

TEST_F(Shell, RefusesAnUnknownCommandAndGoesOn) {
  EXPECT_EQ(Run("nothing\nq\n"), std::string("$>") + kUnknownCommandText + "$>");
}

TEST_F(Shell, TakesALastLineWithoutItsEnd) {
  EXPECT_EQ(Run("q"), "$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Shell, ReadsALongLineInPieces) {
  // 2047 characters make a piece: the command and an argument, then the rest of the line.
  const std::string argument(2042, 'x');
  EXPECT_EQ(Run("echo " + argument + "echo rest\nq\n"), "$>|" + argument + "|\n$>|rest|\n$>");
}

TEST_F(Shell, ReadsALineThatJustFitsInOnePiece) {
  const std::string argument(2041, 'x');
  EXPECT_EQ(Run("echo " + argument + "\nq\n"), "$>|" + argument + "|\n$>");
}

TEST_F(Shell, ReadsTheEndOfALineThatDoesNotFitByItself) {
  const std::string argument(2042, 'x');
  EXPECT_EQ(Run("echo " + argument + "\nq\n"), "$>|" + argument + "|\n$>$>");
}

TEST_F(Shell, EndOfInputEndsItAfterFiveSeconds) {
  const auto begin = steady_clock::now();
  EXPECT_EQ(Run(""), "$>Unknown input problem!\r\nQuit...\r\n");
  EXPECT_EQ(status_, 4u);
  EXPECT_GE(steady_clock::now() - begin, milliseconds(4900));
}

TEST_F(Shell, QuitFlagEndsItAtTheEndOfInputWithoutAWord) {
  gRunFlags = RUN_FLAG_QUIT;
  const auto begin = steady_clock::now();
  EXPECT_EQ(Run(""), "$>");
  EXPECT_EQ(status_, 0u);
  EXPECT_LT(steady_clock::now() - begin, seconds(4));
}

TEST_F(Shell, QuitFlagEndsItAfterACommand) {
  EXPECT_EQ(Run("set 2\necho a\n"), "$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Shell, ClearsTheBreakFlagAloneBeforeEveryPrompt) {
  gRunFlags = RUN_FLAG_BREAK | RUN_FLAG_DEBUG | RUN_FLAG_ENGINEERING;
  EXPECT_EQ(Run("flags\nset 16\nflags\nq\n"), "$>flags 9\n$>$>flags 9\n$>");
}

TEST_F(Shell, MirrorsPromptsInputAndOutput) {
  const auto path = folder_ / "typed.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(Run("echo a\n\nnothing\nq"), std::string("$>|a|\n$>$>") + kUnknownCommandText + "$>");
  EXPECT_EQ(ContentOf(path), std::string("$>echo a\n|a|\n$>\n$>nothing\n") + kUnknownCommandText + "$>q");
}

TEST_F(Shell, MirrorsALineThatCannotBeSplit) {
  const auto path = folder_ / "typed.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  Run("echo \"a\nq\n");
  EXPECT_EQ(ContentOf(path), "$>echo \"a\nError parsing command input string!\n$>q\n");
}

// Puts back the signal dispositions that a test has changed.
class ScopedSignals {
 public:
  ScopedSignals() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], nullptr, &before_[i]);
  }
  ~ScopedSignals() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], &before_[i], nullptr);
  }
  ScopedSignals(const ScopedSignals&) = delete;
  ScopedSignals& operator=(const ScopedSignals&) = delete;

 private:
  static constexpr int kSignals[] = {SIGINT, SIGABRT, SIGTERM, SIGQUIT};
  struct sigaction before_[std::size(kSignals)] = {};
};

TEST_F(Shell, BreakInterruptsTheReadAndPromptsAnew) {
  const ScopedSignals signals;
  InstallSignalHandler();
  StdinPipe typed;
  const CapturedStdout captured;
  const pthread_t shell = pthread_self();
  const auto begin = steady_clock::now();
  std::atomic<bool> prompted_anew = false;

  std::thread user([&] {
    const auto prompts = [&] { return captured.BytesWritten() / 2; };  // nothing else is printed
    const auto wait_for_prompts = [&](std::size_t count) {
      while (prompts() < count && steady_clock::now() - begin < seconds(4)) {
        std::this_thread::sleep_for(milliseconds(5));
      }
    };
    wait_for_prompts(1);
    pthread_kill(shell, SIGQUIT);
    wait_for_prompts(2);
    prompted_anew = prompts() == 2;
    typed.Type("q\n");
  });
  status_ = RunShell(node_);
  user.join();

  EXPECT_TRUE(prompted_anew);
  EXPECT_EQ(status_, 0u);
  EXPECT_EQ(captured.Text(), "$>$>");
}

// Standard input is a terminal as long as an object of this class lives, so that input goes on after its end.
class StdinTerminal {
 public:
  StdinTerminal() : real_stdin_(dup(0)) {
    int terminal = -1;
    opened_ = openpty(&keyboard_, &terminal, nullptr, nullptr, nullptr) == 0 && dup2(terminal, 0) == 0;
    close(terminal);
    std::clearerr(stdin);
  }
  ~StdinTerminal() {
    std::clearerr(stdin);
    dup2(real_stdin_, 0);
    close(real_stdin_);
    close(keyboard_);
  }
  StdinTerminal(const StdinTerminal&) = delete;
  StdinTerminal& operator=(const StdinTerminal&) = delete;

  bool IsOpen() const { return opened_; }
  bool Type(std::string_view text) const {
    return write(keyboard_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  }

 private:
  int real_stdin_;
  int keyboard_ = -1;
  bool opened_ = false;
};

bool WaitUntil(steady_clock::duration limit, const std::function<bool()>& condition) {
  const auto begin = steady_clock::now();
  while (!condition()) {
    if (steady_clock::now() - begin > limit) return false;
    std::this_thread::sleep_for(milliseconds(5));
  }
  return true;
}

TEST_F(Shell, BreakDuringTheWaitAtTheEndOfInputPromptsAnewAndReadsOn) {
  const ScopedSignals signals;
  InstallSignalHandler();
  const StdinTerminal typed;
  ASSERT_TRUE(typed.IsOpen());
  const CapturedStdout captured;
  const pthread_t shell = pthread_self();
  bool ended_input = false;
  bool prompted_soon = false;

  std::thread user([&] {
    typed.Type("\x04");
    ended_input = WaitUntil(seconds(10), [] { return std::feof(stdin) != 0; });
    pthread_kill(shell, SIGQUIT);
    // The whole wait takes five seconds; a signal that just misses the end of one of its naps waits for the
    // next.
    prompted_soon = WaitUntil(seconds(3), [&] { return captured.BytesWritten() >= 4; });
    typed.Type("echo a\nq\n");
  });
  status_ = RunShell(node_);
  user.join();

  EXPECT_TRUE(ended_input);
  EXPECT_TRUE(prompted_soon);
  EXPECT_EQ(captured.Text(), "$>$>|a|\n$>");
  EXPECT_EQ(status_, 0u);
}

// A standard output that raises SIGQUIT as soon as the first prompt has been written to it.
class QuitAfterThePrompt {
 public:
  QuitAfterThePrompt() : real_stdout_(stdout) {
    stdout = fopencookie(this, "w", {.read = nullptr, .write = &Write, .seek = nullptr, .close = nullptr});
  }
  ~QuitAfterThePrompt() {
    std::fclose(stdout);
    stdout = real_stdout_;
  }
  QuitAfterThePrompt(const QuitAfterThePrompt&) = delete;
  QuitAfterThePrompt& operator=(const QuitAfterThePrompt&) = delete;

  std::string text;

 private:
  static ssize_t Write(void* self, const char* bytes, std::size_t size) {
    std::string& text = static_cast<QuitAfterThePrompt*>(self)->text;
    const bool first = text.empty();
    text.append(bytes, size);
    if (first) raise(SIGQUIT);
    return static_cast<ssize_t>(size);
  }

  std::FILE* real_stdout_;
};

TEST_F(Shell, BreakRightAfterThePromptIsNotMissed) {
  const ScopedSignals signals;
  InstallSignalHandler();
  StdinPipe typed;
  const auto begin = steady_clock::now();
  std::thread user([&] {
    std::this_thread::sleep_for(milliseconds(500));
    typed.Type("q\n");
  });
  std::string text;
  {
    const QuitAfterThePrompt output;
    status_ = RunShell(node_);
    text = output.text;
  }
  user.join();
  EXPECT_EQ(text, "$>$>");
  EXPECT_EQ(status_, 0u);
  EXPECT_LT(steady_clock::now() - begin, seconds(4));
}

TEST_F(Shell, BreakThatComesWithALineKeepsTheLine) {
  const ScopedSignals signals;
  InstallSignalHandler();
  StdinPipe typed("echo a\nq\n");
  typed.CloseInput();
  const QuitAfterThePrompt output;
  status_ = RunShell(node_);
  EXPECT_EQ(output.text, "$>$>|a|\n$>");
  EXPECT_EQ(status_, 0u);
}

}  // namespace
