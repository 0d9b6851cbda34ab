#include "runtime/extras/api_log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "runtime/core_services.h"
#include "support/unit_debug_log.h"

namespace {

constexpr char kPath[] = "/tmp/APILog.txt";

class ApiLogTest : public ::testing::Test {
 protected:
  void SetUp() override { std::remove(kPath); }
  void TearDown() override {
    SetCoreLogQuiet(1);
    std::remove(kPath);
  }
};

TEST_F(ApiLogTest, WriterAppendsTheLineInQuotes) {
  WriteApiLog("first");
  WriteApiLog("100% %s");
  EXPECT_EQ(ContentOf(kPath), "Debug:\"first\" \nDebug:\"100% %s\" \n");
}

TEST_F(ApiLogTest, DebugPrintWritesTagAndTextToTheApiLog) {
  ZNDM_DebugPrint("tag", "text %d");
  EXPECT_EQ(ContentOf(kPath), "Debug:\"ZNDM_DebugPrint: tag : text %d\n\" \n");
}

TEST_F(ApiLogTest, DebugPrintGoesToCoreLogMessageToo) {
  SetCoreLogQuiet(0);
  ::testing::internal::CaptureStdout();
  ZNDM_DebugPrint("tag", "text");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Debug: ZNDM_DebugPrint: tag : text\n\r\n");
}

TEST_F(ApiLogTest, DebugPrintTakesAtMost511CharactersOfEach) {
  ZNDM_DebugPrint(std::string(600, 'a').c_str(), std::string(600, 'b').c_str());
  EXPECT_EQ(ContentOf(kPath),
            "Debug:\"ZNDM_DebugPrint: " + std::string(511, 'a') + " : " + std::string(511, 'b') + "\n\" \n");
}

TEST_F(ApiLogTest, DebugPrintTakesNullAsEmpty) {
  ZNDM_DebugPrint(nullptr, nullptr);
  EXPECT_EQ(ContentOf(kPath), "Debug:\"ZNDM_DebugPrint:  : \n\" \n");
}

TEST_F(ApiLogTest, FailedOpenIsReportedWithTheWorkingDirectory) {
  ASSERT_EQ(mkdir(kPath, 0700), 0);
  const int directory = open(".", O_RDONLY | O_DIRECTORY);
  ASSERT_GE(directory, 0);
  ASSERT_EQ(chdir("/"), 0);
  ::testing::internal::CaptureStdout();
  WriteApiLog("line");
  ASSERT_EQ(fchdir(directory), 0);
  close(directory);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "Cannot open APILog.txt from APILog errno:  0x15, 21, Is a directory\nCurrent working dir: /\n");
}

TEST_F(ApiLogTest, MissingWorkingDirectoryIsReportedOnStandardError) {
  ASSERT_EQ(mkdir(kPath, 0700), 0);
  const int directory = open(".", O_RDONLY | O_DIRECTORY);
  ASSERT_GE(directory, 0);
  char gone[] = "/tmp/zfc_api_log_XXXXXX";
  ASSERT_NE(mkdtemp(gone), nullptr);
  ASSERT_EQ(chdir(gone), 0);
  ASSERT_EQ(rmdir(gone), 0);
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  WriteApiLog("line");
  const std::string errors = ::testing::internal::GetCapturedStderr();
  const std::string output = ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(fchdir(directory), 0);
  close(directory);
  EXPECT_EQ(errors, "getcwd() error: No such file or directory\n");
  EXPECT_EQ(output, "Cannot open APILog.txt from APILog errno:  0x15, 21, Is a directory\n");
}

TEST_F(ApiLogTest, SymbolicLinkIsNotFollowed) {
  const std::string target = std::string(kPath) + ".target";
  unlink(target.c_str());
  ASSERT_EQ(symlink(target.c_str(), kPath), 0);
  ::testing::internal::CaptureStdout();
  WriteApiLog("line");
  EXPECT_TRUE(::testing::internal::GetCapturedStdout().starts_with(
      "Cannot open APILog.txt from APILog errno:  0x28, 40, "));
  EXPECT_NE(access(target.c_str(), F_OK), 0);
}

}  // namespace
