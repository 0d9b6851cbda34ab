#include "runtime/sync.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "support/unit_files.h"
#include "support/unit_sync.h"

namespace {

TEST(Sync, OfAFileAndOfItsFolder) {
  const ScratchFolder folder;
  const std::string path = folder / "file";
  WriteContent(path, "content");
  const FailedSync counted(0);
  EXPECT_TRUE(SyncPath(path.c_str()));
  EXPECT_TRUE(SyncFolderOf(path.c_str()));
  EXPECT_EQ(SyncCalls(), 2);
  const FailedSync failed(EIO);
  EXPECT_FALSE(SyncPath(path.c_str()));
  EXPECT_EQ(errno, EIO);
  EXPECT_FALSE(SyncFolderOf(path.c_str()));
}

TEST(Sync, FolderOfAnyPath) {
  const FailedSync failed(EIO);
  EXPECT_FALSE(SyncFolderOf("name in the working folder"));
  EXPECT_FALSE(SyncFolderOf("/name at the root"));
  EXPECT_FALSE(SyncFolderOf("./name"));
  EXPECT_FALSE(SyncFolderOf(""));
  EXPECT_EQ(SyncCalls(), 4);
}

TEST(Sync, NothingToWaitForWhereNothingCanBeOpened) {
  const FailedSync failed(EIO);
  EXPECT_TRUE(SyncPath("/no/such/file"));
  EXPECT_TRUE(SyncFolderOf("/no/such/file"));
  EXPECT_TRUE(SyncFolderOf(("/" + std::string(5000, 'x') + "/name").c_str()));
  EXPECT_EQ(SyncCalls(), 0);
}

TEST(Sync, AFileSystemThatKnowsNoneIsNoFailure) {
  for (const int error : {EINVAL, ENOTSUP, ENOSYS, EROFS}) {
    const FailedSync failed(error);
    EXPECT_TRUE(SyncPath(".")) << error;
    EXPECT_EQ(SyncCalls(), 1);
  }
  for (const int error : {EIO, ENOSPC, EDQUOT, EBADF}) {
    const FailedSync failed(error);
    EXPECT_FALSE(SyncPath(".")) << error;
  }
}

TEST(Sync, APipeKnowsNone) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_TRUE(SyncDescriptor(ends[1]));
  close(ends[0]);
  close(ends[1]);
}

TEST(Sync, IsTriedAgainAfterASignal) {
  const FailedSync interrupted(EINTR, 0, 3);
  EXPECT_TRUE(SyncPath("."));
  EXPECT_EQ(SyncCalls(), 4);
}

}  // namespace
