#include "config/hba_params/hba_params.h"

#include <gtest/gtest.h>

#include <cstring>

#include "unit/config/staged_fixture.h"

namespace {

class HbaParamsTest : public StagedFixture {
 protected:
  HbaParamsTest() : StagedFixture("HBAParams") {}

  // The status of reading a file with this content over a record of zeros.
  StatusCode Read(const std::string& content) {
    Stage(content);
    TestRun test(With({}));
    HbaParams params(*fc_);
    EXPECT_EQ(params.Open(test.run, StagedCommand::kGet), kSuccess);
    const StatusCode status = params.ReadFile(test.run, File());
    record_ = params.Record();
    return status;
  }

  HBAParamsInfo record_ = {};
};

TEST_F(HbaParamsTest, EveryKeyHasItsLimit) {
  struct Limit {
    const char* key;
    std::vector<const char*> passes;
    std::vector<const char*> fails;
  };
  const Limit limits[] = {
      {"Connection_Options", {"0", "2"}, {"3", "-1"}},
      {"Data_Rate", {"0", "7"}, {"8", "-1"}},
      {"Operation_Mode", {"0", "5", "6"}, {"1", "4", "7", "256"}},
      {"Frame_Size", {"512", "1024", "2048", "2112"}, {"0", "511", "2111", "2113"}},
      {"Hard_Loop_ID", {"0", "125"}, {"126"}},
      {"Loop_Reset_Delay", {"0", "255"}, {"256"}},
      {"Interrupt_Delay_Timer", {"0", "255"}, {"256"}},
      {"Execution_Throttle", {"0", "65535"}, {"65536"}},
      {"Login_Retry_Count", {"0", "255"}, {"256"}},
      {"Port_Down_Retry_Count", {"0", "255"}, {"256"}},
      {"Link_Down_Timeout", {"0", "240"}, {"241"}},
      {"Luns_Per_Target", {"0", "256"}, {"257"}},
      {"Disable_BIOS", {"0", "1"}, {"2"}},
      {"Enable_Hard_Loop_Id", {"0", "1"}, {"2"}},
      {"Enable_Fibre_Channel_Tape_Support", {"0", "1"}, {"2"}},
      {"Enable_Lip_Full_Login", {"0", "1"}, {"2"}},
      {"Enable_Target_Reset", {"0", "1"}, {"2"}},
      {"Enable_Receive_Out_Of_Order_Frames", {"0", "1"}, {"2"}},
      {"Enable_LR", {"0", "1"}, {"2"}},
      {"Enable_Fabric_Assign_WWN", {"0", "1"}, {"2"}},
      {"Disable_SCM", {"0", "1"}, {"2"}},
      {"Enable_Virtual_Lane", {"0", "1"}, {"2", "256"}},
  };
  for (const Limit& limit : limits) {
    for (const char* const value : limit.passes) {
      EXPECT_EQ(Read(std::string(limit.key) + "=" + value + "\n"), kSuccess) << limit.key << "=" << value;
    }
    for (const char* const value : limit.fails) {
      EXPECT_EQ(Read(std::string(limit.key) + "=" + value + "\n"), kInvalidParameter)
          << limit.key << "=" << value;
    }
  }
}

TEST_F(HbaParamsTest, RulesBetweenFieldsAndOfAdaptersAreNotChecked) {
  UseModel({0x7122});
  EXPECT_EQ(Read("Connection_Options=0\nData_Rate=7\nOperation_Mode=0\nInterrupt_Delay_Timer=200\nFrame_Size="
                 "2112\n"),
            kSuccess);
  EXPECT_EQ(record_.data_rate, 7u);
  EXPECT_EQ(record_.interrupt_delay_timer, 200u);
  EXPECT_EQ(record_.frame_size, 2112u);
}

TEST_F(HbaParamsTest, KeysAreReadInTheirOrderAndThoseBeforeABadOneStay) {
  EXPECT_EQ(Read("Enable_LR=1\nDisable_BIOS=2\nLuns_Per_Target=9\nData_Rate=3\nDisable_SCM=1\n"),
            kInvalidParameter);
  EXPECT_EQ(record_.data_rate, 3u);
  EXPECT_EQ(record_.max_luns_per_target, 9u);
  EXPECT_EQ(record_.disable_bios, 0u);
  EXPECT_EQ(record_.enable_lr, 0u);
  EXPECT_EQ(record_.disable_scm, 0u);
}

TEST_F(HbaParamsTest, ANewFileHoldsEveryValueSigned) {
  std::memset(static_cast<void*>(&Config().params), 0xFF, sizeof Config().params);
  TestRun test(With({}));
  HbaParams params(*fc_);
  EXPECT_EQ(params.Open(test.run, StagedCommand::kGet), kSuccess);
  StagedValues values;
  params.AddAll(values);
  EXPECT_EQ(values.size(), 22u);
  for (const auto& [key, value] : values)
    EXPECT_EQ(value, key == "Enable_Virtual_Lane" ? "255" : "-1") << key;
}

}  // namespace
