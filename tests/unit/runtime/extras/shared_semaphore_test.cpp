#include "runtime/extras/shared_semaphore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/unit_files.h"

namespace {

// Works in a folder of its own, and swallows what semaphore_create prints unless a test asks for it.
class SharedSemaphoreTest : public ::testing::Test {
 protected:
  SharedSemaphore* Create(const std::string& path) {
    ::testing::internal::CaptureStdout();
    SharedSemaphore* semaphore = semaphore_create(path.c_str());
    printed_ = ::testing::internal::GetCapturedStdout();
    return semaphore;
  }

  const ScratchFolder folder_;
  const std::string path_ = folder_ / "semaphore";
  std::string printed_;
};

TEST_F(SharedSemaphoreTest, CreateMakesAFileOf96BytesWithCount1) {
  const mode_t mask = umask(0);
  SharedSemaphore* semaphore = Create(path_);
  umask(mask);
  ASSERT_NE(semaphore, nullptr);
  EXPECT_EQ(semaphore->count, 1U);
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_size, 96);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0666));
  EXPECT_EQ(printed_, "semaphore_create In\nsemaphore_create: semaphore created!\nsemaphore_create Out\n");
  EXPECT_TRUE(semaphore_close(semaphore, path_.c_str()));
  EXPECT_NE(access(path_.c_str(), F_OK), 0);
}

TEST_F(SharedSemaphoreTest, CreateOpensAnExistingOne) {
  SharedSemaphore* first = Create(path_);
  ASSERT_NE(first, nullptr);
  ASSERT_TRUE(semaphore_post(first));
  SharedSemaphore* second = Create(path_);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(
      printed_,
      "semaphore_create In\nsemaphore_create: semaphore exists, getting semaphore!\nsemaphore_create Out\n");
  EXPECT_EQ(second->count, 2U);
  EXPECT_TRUE(semaphore_close(second, nullptr));
  EXPECT_EQ(access(path_.c_str(), F_OK), 0);
  EXPECT_TRUE(semaphore_close(first, nullptr));
}

TEST_F(SharedSemaphoreTest, CreateInAFolderThatIsNotThereReturnsNull) {
  EXPECT_EQ(Create(folder_ / "none/semaphore"), nullptr);
  EXPECT_EQ(printed_, "semaphore_create In\nsemaphore_create Out\n");
}

TEST_F(SharedSemaphoreTest, OpenWithoutAFileReturnsNull) {
  EXPECT_EQ(semaphore_open(path_.c_str()), nullptr);
}

TEST_F(SharedSemaphoreTest, OpenOfAShorterFileReturnsNull) {
  const int file = open(path_.c_str(), O_WRONLY | O_CREAT, 0600);
  ASSERT_GE(file, 0);
  ASSERT_EQ(ftruncate(file, 95), 0);
  close(file);
  EXPECT_EQ(semaphore_open(path_.c_str()), nullptr);
}

// No page of its mapping can be read.
TEST_F(SharedSemaphoreTest, OpenOfAnEmptyFileReturnsNull) {
  const int file = open(path_.c_str(), O_WRONLY | O_CREAT, 0600);
  ASSERT_GE(file, 0);
  close(file);
  EXPECT_EQ(semaphore_open(path_.c_str()), nullptr);
}

TEST_F(SharedSemaphoreTest, OpenOfAFileThatNobodyFinishedReturnsNull) {
  const int file = open(path_.c_str(), O_WRONLY | O_CREAT, 0600);
  ASSERT_GE(file, 0);
  ASSERT_EQ(ftruncate(file, 96), 0);
  close(file);
  EXPECT_EQ(semaphore_open(path_.c_str()), nullptr);
}

TEST_F(SharedSemaphoreTest, PostRaisesAndWaitLowersTheCount) {
  SharedSemaphore* semaphore = Create(path_);
  ASSERT_NE(semaphore, nullptr);
  EXPECT_TRUE(semaphore_post(semaphore));
  EXPECT_EQ(semaphore->count, 2U);
  EXPECT_TRUE(semaphore_wait(semaphore));
  EXPECT_TRUE(semaphore_wait(semaphore));
  EXPECT_EQ(semaphore->count, 0U);
  EXPECT_TRUE(semaphore_close(semaphore, nullptr));
}

// One that is not shared would leave the other process asleep for good.
TEST_F(SharedSemaphoreTest, ItsMutexWakesAnotherProcess) {
  SharedSemaphore* semaphore = Create(path_);
  ASSERT_NE(semaphore, nullptr);
  ASSERT_EQ(pthread_mutex_lock(&semaphore->mutex), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    alarm(20);
    SharedSemaphore* own = semaphore_open(path_.c_str());
    _exit(own != nullptr && semaphore_post(own) ? 0 : 1);
  }
  usleep(100000);  // the child comes to the mutex
  ASSERT_EQ(pthread_mutex_unlock(&semaphore->mutex), 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(semaphore->count, 2U);
  EXPECT_TRUE(semaphore_close(semaphore, path_.c_str()));
}

TEST_F(SharedSemaphoreTest, WaitBlocksUntilAnotherProcessPosts) {
  SharedSemaphore* semaphore = Create(path_);
  ASSERT_NE(semaphore, nullptr);
  ASSERT_TRUE(semaphore_wait(semaphore));
  int passed[2];
  ASSERT_EQ(pipe(passed), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    SharedSemaphore* own = semaphore_open(path_.c_str());
    if (own == nullptr || !semaphore_wait(own)) _exit(1);
    _exit(write(passed[1], "x", 1) == 1 ? 0 : 2);
  }
  usleep(100000);
  ASSERT_EQ(fcntl(passed[0], F_SETFL, O_NONBLOCK), 0);
  char byte = 0;
  EXPECT_EQ(read(passed[0], &byte, 1), -1);  // nothing yet: the child waits
  EXPECT_TRUE(semaphore_post(semaphore));
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(read(passed[0], &byte, 1), 1);
  EXPECT_EQ(semaphore->count, 0U);
  close(passed[0]);
  close(passed[1]);
  EXPECT_TRUE(semaphore_close(semaphore, nullptr));
}

TEST_F(SharedSemaphoreTest, RefusesNull) {
  EXPECT_FALSE(semaphore_post(nullptr));
  EXPECT_FALSE(semaphore_wait(nullptr));
  EXPECT_FALSE(semaphore_close(nullptr, nullptr));
}

TEST_F(SharedSemaphoreTest, CloseReturnsFalseForANameThatIsNotThere) {
  SharedSemaphore* semaphore = Create(path_);
  ASSERT_NE(semaphore, nullptr);
  EXPECT_FALSE(semaphore_close(semaphore, (folder_ / "other").c_str()));
  EXPECT_EQ(access(path_.c_str(), F_OK), 0);
}

}  // namespace
