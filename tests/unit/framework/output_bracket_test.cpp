#include "framework/output_bracket.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "runtime/out_of_memory.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_files.h"

namespace {

constexpr FunctionName kFunction = {"SomeClass", "SomeFunction"};
constexpr char kFile[] = "/var/tmp/torpi-output.log";

class Bracket : public testing::Test {
 protected:
  ~Bracket() override { stdout = standard_output_; }

  // Opens a bracket that cannot be opened, and prints after it.
  void ExpectDoesNotOpen() {
    bool open = true;
    std::FILE* inside = nullptr;
    std::FILE* after = nullptr;
    EXPECT_EQ(PrintedBy([&] {
                {
                  OutputBracket bracket(kFunction, " before read");
                  open = bracket.IsOpen();
                  inside = stdout;
                  std::printf("still here\n");
                  bracket.Close();
                }
                after = stdout;
                std::printf("and here\n");
              }),
              "still here\nand here\n");
    EXPECT_FALSE(open);
    EXPECT_EQ(inside, standard_output_);
    EXPECT_EQ(after, standard_output_);
  }

  std::FILE* const standard_output_ = stdout;
  NoLibraryOutputFile none_;
  ScratchFolder folder_;
};

TEST_F(Bracket, SendsWhatIsPrintedToTheFile) {
  bool open = false;
  EXPECT_EQ(PrintedBy([&] {
              std::printf("ahead\n");
              {
                const OutputBracket bracket(kFunction);
                open = bracket.IsOpen();
                std::printf("library text\n");
                std::puts("by another call");
              }
              std::printf("after\n");
            }),
            "ahead\nafter\n");
  EXPECT_TRUE(open);
  EXPECT_EQ(ContentOf(kFile), "library text\nby another call\n");
}

TEST_F(Bracket, PutsStandardOutputBackAtItsEnd) {
  {
    const OutputBracket bracket(kFunction);
    EXPECT_NE(stdout, standard_output_);
  }
  EXPECT_EQ(stdout, standard_output_);
}

TEST_F(Bracket, PutsStandardOutputBackAtClose) {
  OutputBracket bracket(kFunction);
  std::printf("library text");
  bracket.Close();
  EXPECT_EQ(stdout, standard_output_);
  EXPECT_FALSE(bracket.IsOpen());
  EXPECT_EQ(ContentOf(kFile), "library text");
}

TEST_F(Bracket, ClosesOnce) {
  OutputBracket first(kFunction);
  first.Close();
  {
    const OutputBracket second(kFunction);
    std::FILE* const inside_second = stdout;
    first.Close();
    EXPECT_EQ(stdout, inside_second);
    EXPECT_NE(stdout, standard_output_);
  }
  EXPECT_EQ(stdout, standard_output_);
}

TEST_F(Bracket, LeavesNoDescriptorOpen) {
  { const OutputBracket bracket(kFunction); }
  EXPECT_EQ(DescriptorOf(kFile), -1);
}

TEST_F(Bracket, AppendsToTheFile) {
  WriteContent(kFile, "from yesterday\n");
  {
    const OutputBracket bracket(kFunction);
    std::printf("one\n");
  }
  {
    const OutputBracket bracket(kFunction);
    std::printf("two\n");
  }
  EXPECT_EQ(ContentOf(kFile), "from yesterday\none\ntwo\n");
}

TEST_F(Bracket, OpensInsideAnother) {
  EXPECT_EQ(PrintedBy([&] {
              const OutputBracket outer(kFunction);
              {
                OutputBracket inner(kFunction);
                std::printf("inner\n");
                inner.Close();
                std::printf("outer\n");
              }
              std::printf("outer again\n");
            }),
            "");
  EXPECT_EQ(stdout, standard_output_);
  // The inner stream is written out first, at its close.
  EXPECT_EQ(ContentOf(kFile), "inner\nouter\nouter again\n");
}

// The child's standard output goes where its standard error goes, which alone can be checked.
using BracketDeathTest = Bracket;

TEST_F(BracketDeathTest, ClosesWhenMemoryGivesOut) {
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::printf("ahead, ");
        const EndStep after([](void*) { std::printf("after, "); }, nullptr);
        const OutputBracket bracket(kFunction);
        std::printf("library text");
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^ahead, after, zfcesxcli: out of memory\n$");
  EXPECT_EQ(ContentOf(kFile), "library text");
}

TEST_F(Bracket, DoesNotOpenAFolder) {
  std::filesystem::create_directory(kFile);
  ExpectDoesNotOpen();
}

TEST_F(Bracket, DoesNotFollowASymbolicLink) {
  const auto target = folder_ / "target";
  WriteContent(target, "not ours");
  std::filesystem::create_symlink(target, kFile);
  ExpectDoesNotOpen();
  EXPECT_EQ(ContentOf(target), "not ours");
}

TEST_F(Bracket, CreatesNothingThroughADanglingLink) {
  const auto target = folder_ / "target";
  std::filesystem::create_symlink(target, kFile);
  ExpectDoesNotOpen();
  EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(Bracket, LeavesAFileWithAnotherNameAlone) {
  const std::string target = std::string(kFile) + ".target";
  WriteContent(target, "not ours");
  ASSERT_EQ(link(target.c_str(), kFile), 0);
  ExpectDoesNotOpen();
  EXPECT_EQ(ContentOf(target), "not ours");
  ASSERT_EQ(unlink(target.c_str()), 0);
  const OutputBracket bracket(kFunction);
  EXPECT_TRUE(bracket.IsOpen());
}

TEST_F(Bracket, IsNotHeldByAFullPipe) {
  ASSERT_EQ(mkfifo(kFile, 0600), 0);
  const int pipe = open(kFile, O_RDWR | O_NONBLOCK);
  const std::string block(4096, 'x');
  while (write(pipe, block.data(), block.size()) > 0) {
  }
  {
    const OutputBracket bracket(kFunction);
    EXPECT_TRUE(bracket.IsOpen());
    std::printf("%s", block.c_str());
  }
  close(pipe);
}

TEST_F(Bracket, OpensAgainOnceItsFileCanBe) {
  std::filesystem::create_directory(kFile);
  { const OutputBracket bracket(kFunction); }
  std::filesystem::remove(kFile);
  {
    const OutputBracket bracket(kFunction);
    EXPECT_TRUE(bracket.IsOpen());
    std::printf("library text");
  }
  EXPECT_EQ(ContentOf(kFile), "library text");
}

TEST_F(Bracket, NamesItsFile) {
  EXPECT_STREQ(kLibraryOutputFile, kFile);
}

TEST_F(Bracket, SilencedStandardOutputTakesEverythingAndShowsNothing) {
  std::FILE* silenced = nullptr;
  EXPECT_EQ(PrintedBy([&] {
              SilenceStandardOutput();
              silenced = stdout;
              std::printf("%s", std::string(100000, 'x').c_str());
              std::fflush(stdout);
              stdout = standard_output_;
            }),
            "");
  ASSERT_NE(silenced, nullptr);
  ASSERT_NE(silenced, standard_output_);
  std::fclose(silenced);
}

// While it lives, no file can be opened.
class NoMoreDescriptors {
 public:
  NoMoreDescriptors() {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit none = {.rlim_cur = 0, .rlim_max = before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  NoMoreDescriptors(const NoMoreDescriptors&) = delete;
  NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

 private:
  rlimit before_ = {};
};

TEST_F(Bracket, StandardOutputIsSilencedWithoutADescriptorToo) {
  std::FILE* silenced = nullptr;
  int printed = 0;
  EXPECT_TRUE(PrintedBy([&] {
                {
                  const NoMoreDescriptors none;
                  SilenceStandardOutput();
                }
                silenced = stdout;
                printed = std::printf("%s", std::string(100000, 'x').c_str());
                std::fflush(stdout);
                stdout = standard_output_;
              }).empty());
  EXPECT_EQ(printed, 100000);
  ASSERT_NE(silenced, nullptr);
  ASSERT_NE(silenced, standard_output_);
  EXPECT_EQ(fileno(silenced), -1);
  std::fclose(silenced);
}

}  // namespace
