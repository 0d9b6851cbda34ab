#include "diag/pass_loop.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <string>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"

namespace {

// For its lifetime standard error is a terminal, or a pipe.
class ErrorsAt {
 public:
  explicit ErrorsAt(bool terminal) : kept_(dup(STDERR_FILENO)) {
    int ends[2];
    if (terminal) {
      termios plain = {};
      EXPECT_EQ(openpty(&ends[0], &ends[1], nullptr, &plain, nullptr), 0);
    } else {
      EXPECT_EQ(pipe(ends), 0);
    }
    reader_ = ends[0];
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
  }
  ~ErrorsAt() {
    Restore();
    close(reader_);
  }
  ErrorsAt(const ErrorsAt&) = delete;
  ErrorsAt& operator=(const ErrorsAt&) = delete;

  // Puts standard error back and returns what was written meanwhile.
  std::string Written() {
    Restore();
    std::string text;
    char piece[4096];
    for (ssize_t count; (count = read(reader_, piece, sizeof piece)) > 0;) {
      text.append(piece, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  void Restore() {
    if (kept_ < 0) return;
    dup2(kept_, STDERR_FILENO);
    close(kept_);
    kept_ = -1;
  }

  int kept_;
  int reader_ = -1;
};

TEST(PassProgress, ShowsThePassAndRemovesTheLine) {
  ErrorsAt errors(true);
  {
    PassProgress progress(OUTPUT_CLI, 100);
    progress.Show(3);
    progress.Show(100);
  }
  EXPECT_EQ(errors.Written(), "\rpass 3 of 100\rpass 100 of 100\r" + std::string(15, ' ') + "\r");
}

TEST(PassProgress, WritesNothingWithoutAPass) {
  ErrorsAt errors(true);
  { const PassProgress progress(OUTPUT_CLI, 100); }
  EXPECT_EQ(errors.Written(), "");
}

TEST(PassProgress, IsSilentInXml) {
  ErrorsAt errors(true);
  { PassProgress(OUTPUT_XML, 2).Show(1); }
  EXPECT_EQ(errors.Written(), "");
}

TEST(PassProgress, IsSilentWithoutATerminal) {
  ErrorsAt errors(false);
  { PassProgress(OUTPUT_CLI, 2).Show(1); }
  EXPECT_EQ(errors.Written(), "");
}

TEST(RunPasses, CallsInTheBracketAndJudgesAfterIt) {
  TestRun test;
  std::FILE* const outside = stdout;
  int calls = 0;
  bool swapped = true;
  bool back = true;
  const StatusCode status = RunPasses(
      test.run, 3,
      [&] {
        ++calls;
        swapped = swapped && stdout != outside;
      },
      [&] {
        back = back && stdout == outside;
        return true;
      });
  EXPECT_EQ(status, kSuccess);
  EXPECT_EQ(calls, 3);
  EXPECT_TRUE(swapped);
  EXPECT_TRUE(back);
}

TEST(RunPasses, EndsWhenAPassEndsIt) {
  TestRun test;
  int calls = 0;
  EXPECT_EQ(RunPasses(
                test.run, 5, [&] { ++calls; }, [&] { return calls < 2; }),
            kSuccess);
  EXPECT_EQ(calls, 2);
}

}  // namespace
