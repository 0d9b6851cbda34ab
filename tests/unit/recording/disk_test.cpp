#include "recording/disk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <string>
#include <thread>

#include "support/unit_files.h"
#include "support/unit_sync.h"

namespace {

using recording::Sync;
using recording::SyncFolderOf;
using recording::WriteAll;

// The reader sends signals to the writer, which waits for room: a write ends with a part, the next with
// nothing.
TEST(Disk, TakesContentInPieces) {
  struct sigaction noticed = {};
  noticed.sa_handler = [](int) {};
  struct sigaction before = {};
  ASSERT_EQ(sigaction(SIGUSR1, &noticed, &before), 0);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::string content;
  for (int i = 0; i < 30000; ++i) content += std::to_string(i);
  std::string read_back;
  const pthread_t writer = pthread_self();
  std::thread reader([&] {
    char piece[16384];
    for (ssize_t count = 1; count > 0;) {
      for (int sent = 0; sent < 2; ++sent) {
        usleep(500);
        pthread_kill(writer, SIGUSR1);
      }
      usleep(500);
      count = read(ends[0], piece, sizeof piece);
      if (count > 0) read_back.append(piece, static_cast<std::size_t>(count));
    }
  });
  EXPECT_TRUE(WriteAll(ends[1], content));
  close(ends[1]);
  reader.join();
  close(ends[0]);
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(read_back, content);
}

TEST(Disk, ThatIsFull) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  EXPECT_TRUE(WriteAll(full, ""));
  EXPECT_FALSE(WriteAll(full, "x"));
  EXPECT_EQ(errno, ENOSPC);
  close(full);
}

TEST(Disk, IsWaitedForInAFileAndItsFolder) {
  const ScratchFolder folder;
  const std::string path = folder / "file";
  WriteContent(path, "content");
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  const FailedSync counted(0);
  EXPECT_TRUE(Sync(file));
  EXPECT_TRUE(SyncFolderOf(path));
  EXPECT_EQ(SyncCalls(), 2);
  const FailedSync failed(EIO);
  EXPECT_FALSE(Sync(file));
  EXPECT_FALSE(SyncFolderOf(path));
  EXPECT_EQ(errno, EIO);
  close(file);
}

TEST(Disk, HasAFolderForAnyPath) {
  const FailedSync failed(EIO);
  EXPECT_FALSE(SyncFolderOf("name in the working folder"));
  EXPECT_FALSE(SyncFolderOf("/name at the root"));
  EXPECT_FALSE(SyncFolderOf("./name"));
  EXPECT_EQ(SyncCalls(), 3);
  EXPECT_FALSE(SyncFolderOf("/no/such/file"));
  EXPECT_EQ(errno, ENOENT);
}

// The folder gets the descriptor 0.
TEST(Disk, IsWaitedForWithoutAStandardInput) {
  const int input = dup(STDIN_FILENO);
  ASSERT_GT(input, STDIN_FILENO);
  close(STDIN_FILENO);
  bool synced = false;
  {
    const FailedSync counted(0);
    errno = 0;
    synced = SyncFolderOf("./name");
    EXPECT_EQ(SyncCalls(), 1);
  }
  EXPECT_EQ(dup2(input, STDIN_FILENO), STDIN_FILENO);
  close(input);
  EXPECT_TRUE(synced);
}

TEST(Disk, ThatKnowsNoWaitIsNoFailure) {
  for (const int error : {EINVAL, ENOTSUP, ENOSYS}) {
    const FailedSync unknown(error);
    EXPECT_TRUE(SyncFolderOf("./name")) << error;
  }
  for (const int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
    const FailedSync failed(error);
    EXPECT_FALSE(SyncFolderOf("./name")) << error;
  }
}

TEST(Disk, IsWaitedForAgainAfterASignal) {
  const FailedSync interrupted(EINTR, 0, 3);
  EXPECT_TRUE(SyncFolderOf("./name"));
  EXPECT_EQ(SyncCalls(), 4);
}

}  // namespace
