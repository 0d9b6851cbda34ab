#include "tools/common/new_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "support/unit_files.h"
#include "support/unit_sync.h"

namespace {

using tools::WriteOutput;

class NewFile : public testing::Test {
 protected:
  std::string Path(const char* name) const { return folder_ / name; }
  std::size_t Files() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(Path(""))) ++count;
    return count;
  }

 private:
  const ScratchFolder folder_;
};

TEST_F(NewFile, IsWrittenWhole) {
  const std::string content("zero\0and all\n", 13);
  EXPECT_EQ(WriteOutput(Path("new"), content, false), "");
  EXPECT_EQ(ContentOf(Path("new")), content);
  EXPECT_EQ(WriteOutput(Path("empty"), "", false), "");
  EXPECT_EQ(ContentOf(Path("empty")), "");
  EXPECT_EQ(Files(), 2u);
}

TEST_F(NewFile, HasTheModeOfAnyNewFile) {
  const mode_t mask = umask(027);
  EXPECT_EQ(WriteOutput(Path("new"), "x", false), "");
  umask(mask);
  EXPECT_EQ(std::filesystem::status(Path("new")).permissions(), std::filesystem::perms{0640});
}

TEST_F(NewFile, FileThatIsThereNeedsForce) {
  WriteContent(Path("there"), "old");
  EXPECT_EQ(WriteOutput(Path("there"), "new", false),
            Path("there") + ": is there already; --force replaces it");
  EXPECT_EQ(ContentOf(Path("there")), "old");
  EXPECT_EQ(WriteOutput(Path("there"), "new", true), "");
  EXPECT_EQ(ContentOf(Path("there")), "new");
  EXPECT_EQ(Files(), 1u);
}

TEST_F(NewFile, IsOnTheDiskWithItsName) {
  const FailedSync counted(0);
  EXPECT_EQ(WriteOutput(Path("new"), "x", false), "");
  EXPECT_EQ(WriteOutput(Path("new"), "y", true), "");
  EXPECT_EQ(SyncCalls(), 4);
}

TEST_F(NewFile, ADiskThatFailsIsAFailure) {
  const FailedSync failed(EIO);
  EXPECT_EQ(WriteOutput(Path("new"), "x", false), Path("new") + ": can't be written: Input/output error");
  EXPECT_EQ(Files(), 0u);
  const FailedSync name(EIO, 1);
  EXPECT_EQ(WriteOutput(Path("new"), "x", false), Path("new") + ": can't be written: Input/output error");
  EXPECT_EQ(ContentOf(Path("new")), "x");
}

TEST_F(NewFile, AFileSystemWithoutSyncsIsNoFailure) {
  const FailedSync unknown(ENOTSUP);
  EXPECT_EQ(WriteOutput(Path("new"), "x", false), "");
  EXPECT_EQ(SyncCalls(), 2);
  EXPECT_EQ(ContentOf(Path("new")), "x");
}

// A mounted file is written as a new one, and can't be replaced.
TEST_F(NewFile, FailedReplacementLeavesTheOldFile) {
  WriteContent(Path("there"), "old");
  if (mount(Path("there").c_str(), Path("there").c_str(), nullptr, MS_BIND, nullptr) != 0) {
    GTEST_SKIP() << "mounts are refused on this machine";
  }
  EXPECT_EQ(WriteOutput(Path("there"), "new", true),
            Path("there") + ": can't be written: Device or resource busy");
  EXPECT_EQ(umount(Path("there").c_str()), 0);
  EXPECT_EQ(ContentOf(Path("there")), "old");
  EXPECT_EQ(Files(), 1u);
}

TEST_F(NewFile, LinkWithoutTargetIsThereToo) {
  std::filesystem::create_symlink(Path("none"), Path("link"));
  EXPECT_EQ(WriteOutput(Path("link"), "new", false),
            Path("link") + ": is there already; --force replaces it");
  EXPECT_FALSE(std::filesystem::exists(Path("none")));
}

TEST_F(NewFile, ReaderOfTheOldOneKeepsIt) {
  WriteContent(Path("file"), "old");
  const int old = open(Path("file").c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(WriteOutput(Path("file"), "new and longer", true), "");
  char text[16] = {};
  EXPECT_EQ(read(old, text, sizeof text), 3);
  EXPECT_STREQ(text, "old");
  close(old);
}

TEST_F(NewFile, FolderThatIsMissingOrNone) {
  EXPECT_EQ(WriteOutput(Path("none/new"), "x", false),
            Path("none/new") + ": can't be written: No such file or directory");
  WriteContent(Path("file"), "");
  EXPECT_EQ(WriteOutput(Path("file/new"), "x", true),
            Path("file/new") + ": can't be written: Not a directory");
}

TEST_F(NewFile, FolderIsNoFile) {
  EXPECT_EQ(WriteOutput(Path(""), "x", false), Path("") + ": is there already; --force replaces it");
  EXPECT_EQ(WriteOutput(Path(""), "x", true), Path("") + ": can't be written: Is a directory");
}

TEST_F(NewFile, DeviceIsWrittenToAndStays) {
  EXPECT_EQ(WriteOutput("/dev/null", "x", false), "/dev/null: is there already; --force replaces it");
  EXPECT_EQ(WriteOutput("/dev/null", "x", true), "");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  EXPECT_EQ(WriteOutput("/dev/full", "x", true), "/dev/full: can't be written: No space left on device");
}

TEST_F(NewFile, PipeIsWrittenTo) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const int reader = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_EQ(WriteOutput(Path("pipe"), "text", true), "");
  char text[16] = {};
  EXPECT_EQ(read(reader, text, sizeof text), 4);
  EXPECT_STREQ(text, "text");
  close(reader);
}

// Standard output as a file of the test's, for as long as the object lives.
class StandardOutput {
 public:
  explicit StandardOutput(const char* path) : old_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    dup2(file, STDOUT_FILENO);
    close(file);
  }
  ~StandardOutput() {
    dup2(old_, STDOUT_FILENO);
    close(old_);
  }
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  int old_;
};

TEST_F(NewFile, StandardOutputByItsTwoNames) {
  for (const char* name : {"", "-"}) {
    std::string wrong = "not run";
    {
      const StandardOutput output(Path("output").c_str());
      wrong = WriteOutput(name, "text\n", false);
    }
    EXPECT_EQ(wrong, "");
    EXPECT_EQ(ContentOf(Path("output")), "text\n");
  }
}

TEST_F(NewFile, StandardOutputThatIsFull) {
  std::string wrong;
  {
    const StandardOutput output("/dev/full");
    wrong = WriteOutput("-", "text\n", false);
  }
  EXPECT_EQ(wrong, "standard output: can't be written: No space left on device");
}

}  // namespace
