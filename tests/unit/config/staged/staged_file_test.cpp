#include "config/staged/staged_file.h"

#include <cerrno>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/unit_sync.h"
#include "unit/config/staged_fixture.h"

namespace {

class StagedFileTest : public StagedFixture {
 protected:
  StagedFileTest() : StagedFixture("Family") {}

  const StagedFile file_{StagedPath("Family", kPort)};
  TestRun test_;
};

TEST_F(StagedFileTest, IsNamedAfterItsFamilyAndThePort) {
  EXPECT_FALSE(file_.IsPresent());
  Stage("A=1\n");
  EXPECT_TRUE(file_.IsPresent());
  EXPECT_TRUE(std::filesystem::exists("/opt/ZunaFcEsxcliPlugin/tmp/Family_FC_21:00:00:11:22:33:44:55"));
}

TEST_F(StagedFileTest, WritesInByteOrderOfTheKeys) {
  EXPECT_EQ(file_.Write(test_.run, {{"b1", "1"}, {"B2", "2"}, {"A_c", "3"}, {"A_D", "4"}, {"A1", "5"}}),
            kSuccess);
  EXPECT_EQ(ContentOf(path_), "A1=5\nA_D=4\nA_c=3\nB2=2\nb1=1\n");
}

TEST_F(StagedFileTest, WritingNothingMakesNoFile) {
  EXPECT_EQ(file_.Write(test_.run, {}), kSuccess);
  EXPECT_FALSE(file_.IsPresent());
}

TEST_F(StagedFileTest, AFailedWriteStopsAtOnce) {
  Stage("A=1\n");
  ASSERT_EQ(mkdir((path_ + "_tmp").c_str(), 0755), 0);
  EXPECT_EQ(file_.Write(test_.run, {{"A", "2"}, {"B", "3"}}), kFileNotFound);
  EXPECT_EQ(ContentOf(path_), "A=1\n");
  std::filesystem::remove(path_ + "_tmp");
}

TEST_F(StagedFileTest, ANewFileIsOnTheDiskWhenItIsSynced) {
  StagedFile file(path_);
  const FailedSync counted(0);
  EXPECT_EQ(file.Create(test_.run, {{"A", "1"}, {"B", "2"}}), kSuccess);
  EXPECT_EQ(file.Write(test_.run, {{"A", "3"}}), kSuccess);
  EXPECT_EQ(SyncCalls(), 0);
  EXPECT_EQ(file.Sync(test_.run), kSuccess);
  EXPECT_EQ(SyncCalls(), 2);
  EXPECT_EQ(ContentOf(path_), "A=3\nB=2\n");
}

TEST_F(StagedFileTest, AnOldFileIsReplacedByCopiesOnTheDisk) {
  Stage("A=1\nB=2\n");
  const FailedSync counted(0);
  EXPECT_EQ(file_.Write(test_.run, {{"A", "3"}, {"B", "4"}}), kSuccess);
  EXPECT_EQ(SyncCalls(), 4);
}

TEST_F(StagedFileTest, ADiskThatFailsIsAFailedFileOperation) {
  Stage("A=1\n");
  const FailedSync failed(EIO);
  EXPECT_EQ(file_.Sync(test_.run), kFileNotFound);
  EXPECT_EQ(file_.Write(test_.run, {{"A", "2"}}), kFileNotFound);
  EXPECT_EQ(ContentOf(path_), "A=1\n");
}

TEST_F(StagedFileTest, FindLeavesTheValueWithoutTheKey) {
  std::string value = "before";
  std::uint32_t number = 77;
  EXPECT_FALSE(file_.Find("A", value));
  Stage("B=5\n");
  EXPECT_FALSE(file_.Find("A", value));
  EXPECT_FALSE(file_.FindNumber("A", number));
  EXPECT_EQ(value, "before");
  EXPECT_EQ(number, 77u);
  EXPECT_TRUE(file_.FindNumber("B", number));
  EXPECT_EQ(number, 5u);
}

TEST_F(StagedFileTest, AnUnreadableFileIsNoFileWithoutTheKey) {
  std::string value;
  Stage("B=5\n");
  EXPECT_FALSE(file_.Find("A", value));
  EXPECT_EQ(file_.CheckReads(test_.run), kSuccess);
  const StagedFile folder(path_ + "_folder");  // it opens, but no byte of it can be read
  ASSERT_EQ(mkdir((path_ + "_folder").c_str(), 0755), 0);
  EXPECT_FALSE(folder.Find("A", value));
  EXPECT_EQ(folder.CheckReads(test_.run), kFileNotFound);
  std::filesystem::remove(path_ + "_folder");
}

TEST_F(StagedFileTest, ASmallerBufferSeesLess) {
  Stage("A=" + std::string(300, 'a') + "\n");
  std::string value;
  EXPECT_TRUE(file_.Find("A", value));
  EXPECT_EQ(value.size(), 300u);
  EXPECT_TRUE(StagedFile(StagedPath("Family", kPort), 256).Find("A", value));
  EXPECT_EQ(value.size(), 255u);
}

TEST_F(StagedFileTest, RemoveIsQuietWithoutAFile) {
  file_.Remove();
  Stage("A=1\n");
  file_.Remove();
  EXPECT_FALSE(file_.IsPresent());
}

}  // namespace
