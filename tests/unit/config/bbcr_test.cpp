#include "config/bbcr.h"

#include "unit/config/staged_fixture.h"

namespace {

class BbcrTest : public StagedFixture {
 protected:
  BbcrTest() : StagedFixture("BBCR") {}

  std::string Checked(const std::vector<std::string>& options) const {
    TestRun test(With(options));
    return Taken(Bbcr(*fc_), test.run);
  }
};

TEST_F(BbcrTest, OnlySomeFamiliesHaveIt) {
  for (const std::uint16_t device : kDevices) {
    UseModel({device});
    TestRun test(With({}));
    Bbcr bbcr(*fc_);
    EXPECT_EQ(bbcr.Open(test.run, StagedCommand::kGet),
              HazelIrisOrDahlia(device) ? kSuccess : kFeatureNotSupported)
        << std::hex << device;
  }
}

TEST_F(BbcrTest, Options) {
  EXPECT_EQ(Checked({}), "");
  EXPECT_EQ(Checked({"--bbcr-status", "true"}), "BBCR_Status=1");
  EXPECT_EQ(Checked({"-b", "TRUE"}), "BBCR_Status=1");
  EXPECT_EQ(Checked({"-b", "false"}), "BBCR_Status=0");
  EXPECT_EQ(Checked({"-b", "1"}), "6");
  EXPECT_EQ(Checked({"--bbcr-configured", "0"}), "BBCR_Count=0");
  EXPECT_EQ(Checked({"-c", "15"}), "BBCR_Count=15");
  EXPECT_EQ(Checked({"-c", "16"}), "6");
  EXPECT_EQ(Checked({"-c", "-1"}), "6");
  EXPECT_EQ(Checked({"-c", "word"}), "BBCR_Count=0");
  EXPECT_EQ(Checked({"-c", "3", "-b", "false"}), "BBCR_Count=3 BBCR_Status=0");
  EXPECT_EQ(Checked({"-c", "3", "-b", "maybe"}), "6");
}

TEST_F(BbcrTest, ValuesOfAFile) {
  Config().bbcr_status = 1;
  Config().bbcr_configured = 9;
  TestRun test(With({}));
  Bbcr bbcr(*fc_);
  ASSERT_EQ(bbcr.Open(test.run, StagedCommand::kGet), kSuccess);
  StagedValues values;
  bbcr.AddAll(values);
  EXPECT_EQ(values, (StagedValues{{"BBCR_Count", "9"}, {"BBCR_Status", "1"}}));

  Stage("BBCR_Count=15\nBBCR_Status=0\n");
  EXPECT_EQ(bbcr.ReadFile(test.run, File()), kSuccess);
  EXPECT_EQ(bbcr.Record().status, 0);
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("A=1\n");
  EXPECT_EQ(bbcr.ReadFile(test.run, File()), kSuccess);
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("BBCR_Count=16\nBBCR_Status=1\n");
  EXPECT_EQ(bbcr.ReadFile(test.run, File()), kInvalidParameter);
  EXPECT_EQ(bbcr.Record().status, 1);  // taken before the count
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("BBCR_Count=1\nBBCR_Status=2\n");
  EXPECT_EQ(bbcr.ReadFile(test.run, File()), kInvalidParameter);
  EXPECT_EQ(bbcr.Record().configured, 15);
}

}  // namespace
