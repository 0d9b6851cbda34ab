#include "config/bbcr.h"

#include "staged_fixture.h"

namespace {

class BbcrTest : public StagedFixture {
 protected:
  BbcrTest() : StagedFixture("BBCR") {}

  std::string Checked(const std::vector<std::string>& options) const {
    const Words words = With(options);
    Bbcr bbcr;
    EXPECT_EQ(bbcr.SelectPort(words), kSuccess);
    StagedValues values;
    const StatusCode status = bbcr.CheckOptions(words, {StagedPath("BBCR", kPort), kValueSize}, values);
    if (status != kSuccess) return std::to_string(status);
    std::string text;
    for (const auto& [key, value] : values) text += (text.empty() ? "" : " ") + key + "=" + value;
    return text;
  }
};

TEST_F(BbcrTest, OnlySomeFamiliesHaveIt) {
  for (const std::uint16_t device : kDevices) {
    UseModel({device});
    Bbcr bbcr;
    ASSERT_EQ(bbcr.SelectPort(With({})), kSuccess);
    EXPECT_EQ(bbcr.Prepare(With({})), HazelIrisOrDahlia(device) ? kSuccess : kFeatureNotSupported)
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
  Bbcr bbcr;
  ASSERT_EQ(bbcr.SelectPort(With({})), kSuccess);
  ASSERT_EQ(bbcr.ReadDevice(), kSuccess);
  EXPECT_EQ(bbcr.AllValues(), (StagedValues{{"BBCR_Count", "9"}, {"BBCR_Status", "1"}}));
  const StagedFile file(StagedPath("BBCR", kPort), kValueSize);

  Stage("BBCR_Count=15\nBBCR_Status=0\n");
  EXPECT_EQ(bbcr.ReadFile(file), kSuccess);
  EXPECT_EQ(bbcr.Record().status, 0);
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("A=1\n");
  EXPECT_EQ(bbcr.ReadFile(file), kSuccess);
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("BBCR_Count=16\nBBCR_Status=1\n");
  EXPECT_EQ(bbcr.ReadFile(file), kInvalidParameter);
  EXPECT_EQ(bbcr.Record().status, 1);  // taken ahead of the count
  EXPECT_EQ(bbcr.Record().configured, 15);

  Stage("BBCR_Count=1\nBBCR_Status=2\n");
  EXPECT_EQ(bbcr.ReadFile(file), kInvalidParameter);
  EXPECT_EQ(bbcr.Record().configured, 15);
}

}  // namespace
