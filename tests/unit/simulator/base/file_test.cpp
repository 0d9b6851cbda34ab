#include "base/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "base/results.h"
#include "support/unit_files.h"
#include "support/unit_sync.h"

namespace lab {
namespace {

class FileTest : public testing::Test {
 protected:
  std::string Path(const char* name) const { return folder_ / name; }
  std::size_t Files() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(Path(""))) ++count;
    return count;
  }
  static mode_t Mode(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
  }

 private:
  const ScratchFolder folder_;
};

TEST_F(FileTest, AWrittenFileIsNewOrReplaced) {
  const mode_t mask = umask(027);
  EXPECT_EQ(WriteFile(Path("file").c_str(), "old"), kSuccess);
  umask(mask);
  EXPECT_EQ(Mode(Path("file")), 0640u);
  EXPECT_EQ(chmod(Path("file").c_str(), 0604), 0);
  EXPECT_EQ(WriteFile(Path("file").c_str(), "new"), kSuccess);
  EXPECT_EQ(ContentOf(Path("file")), "new");
  EXPECT_EQ(Mode(Path("file")), 0604u);
  EXPECT_EQ(Files(), 1u);
}

TEST_F(FileTest, ALinkToAWrittenFileStays) {
  WriteContent(Path("target"), "old");
  std::filesystem::create_symlink("target", Path("link"));
  EXPECT_EQ(WriteFile(Path("link").c_str(), "new"), kSuccess);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
  EXPECT_EQ(ContentOf(Path("target")), "new");
}

TEST_F(FileTest, ADeviceIsWrittenTo) {
  EXPECT_EQ(WriteFile("/dev/null", "x"), kSuccess);
  EXPECT_EQ(WriteFile("/dev/full", "x"), kFileOpenError);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

// The name of an open file among the links of the kernel, as /dev/stdout has one.
std::string LinkOf(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

TEST_F(FileTest, AnOpenFileIsWrittenToByItsLink) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_EQ(WriteFile(LinkOf(ends[1]).c_str(), "piped"), kSuccess);
  char read_back[8] = "";
  EXPECT_EQ(read(ends[0], read_back, sizeof read_back - 1), 5);
  EXPECT_STREQ(read_back, "piped");
  close(ends[0]);
  close(ends[1]);

  WriteContent(Path("file"), "old");
  const int file = open(Path("file").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(file, 0);
  ASSERT_EQ(unlink(Path("file").c_str()), 0);
  EXPECT_EQ(WriteFile(LinkOf(file).c_str(), "new"), kSuccess);
  EXPECT_EQ(pread(file, read_back, sizeof read_back - 1, 0), 3);
  EXPECT_STREQ(read_back, "newed");  // three bytes over the five
  close(file);
  EXPECT_EQ(Files(), 0u);
}

TEST_F(FileTest, ADanglingLinkLeadsToTheNewFile) {
  std::filesystem::create_symlink("target", Path("link"));
  EXPECT_EQ(WriteFile(Path("link").c_str(), "new"), kSuccess);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
  EXPECT_EQ(ContentOf(Path("target")), "new");
}

TEST_F(FileTest, AFileInAFolderThatTakesNoOtherIsWrittenTo) {
  EXPECT_EQ(WriteFile("/proc/self/comm", "renamed"), kSuccess);
  EXPECT_EQ(ContentOf("/proc/self/comm"), "renamed\n");
}

TEST_F(FileTest, WhatCannotBeWritten) {
  EXPECT_EQ(WriteFile(Path("no/file").c_str(), "x"), kFileNotFound);
  EXPECT_EQ(WriteFile(Path("").c_str(), "x"), kFileOpenError);
  WriteContent(Path("file"), "old");
  EXPECT_EQ(WriteFile(Path("file/below").c_str(), "x"), kFileNotFound);
}

TEST_F(FileTest, ADiskThatFailsKeepsTheOldFile) {
  WriteContent(Path("file"), "old");
  const FailedSync failed(EIO);
  EXPECT_EQ(WriteFile(Path("file").c_str(), "new"), kFileOpenError);
  EXPECT_EQ(ReplaceFile(Path("file"), "new"), Path("file") + ": can't be written: Input/output error");
  EXPECT_EQ(ContentOf(Path("file")), "old");
  EXPECT_EQ(Files(), 1u);
  const FailedSync name(EIO, 1);
  EXPECT_EQ(ReplaceFile(Path("file"), "new"), Path("file") + ": can't be written: Input/output error");
}

TEST_F(FileTest, AFileSystemWithoutSyncsIsNoFailure) {
  for (const int error : {EINVAL, ENOTSUP, ENOSYS}) {
    const FailedSync unknown(error);
    EXPECT_EQ(WriteFile(Path("file").c_str(), "new"), kSuccess);
    EXPECT_EQ(ReplaceFile(Path("file"), "newer"), "");
    EXPECT_EQ(SyncCalls(), 4);
  }
}

}  // namespace
}  // namespace lab
