#include "discovery/mezzanine.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_debug_log.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"

namespace {

class Mezzanine : public testing::Test {
 protected:
  Mezzanine() { ResetLibrary(); }

  NoLibraryOutputFile none_;
  FCProtocolEntry fc_ = {};
  TestRun test_;
};

TEST_F(Mezzanine, IsFlagOneAlone) {
  for (const int flag : {0, 1, 2, 255}) {
    Library().mezz_flag = static_cast<std::uint8_t>(flag);
    bool is_mezz = flag != 1;
    EXPECT_EQ(ReadIsMezzAdapter(test_.run, fc_, is_mezz), 0u);
    EXPECT_EQ(is_mezz, flag == 1) << flag;
  }
}

TEST_F(Mezzanine, IsNoneWhenTheCallLeavesTheFlagAlone) {
  Library().mezz_flag.reset();
  bool is_mezz = true;
  EXPECT_EQ(ReadIsMezzAdapter(test_.run, fc_, is_mezz), 0u);
  EXPECT_FALSE(is_mezz);
}

TEST_F(Mezzanine, IsAskedOfThePortsHandle) {
  bool is_mezz = false;
  ReadIsMezzAdapter(test_.run, fc_, is_mezz);
  EXPECT_EQ(Library().mezz_handle_asked, &fc_.handle);
}

TEST_F(Mezzanine, EveryFailureIsThirteen) {
  for (const std::uint32_t result : {1u, 149u, 150u, 151u, 0xFFFFFFFFu}) {
    Library().mezz_result = result;
    bool is_mezz = false;
    EXPECT_EQ(ReadIsMezzAdapter(test_.run, fc_, is_mezz), 13u) << result;
  }
}

TEST_F(Mezzanine, IsAskedInABracket) {
  Library().chatter = "library text\n";
  bool is_mezz = false;
  EXPECT_EQ(PrintedBy([&] { ReadIsMezzAdapter(test_.run, fc_, is_mezz); }), "");
  EXPECT_EQ(ContentOf("/var/tmp/torpi-output.log"), "library text\n");
}

TEST_F(Mezzanine, IsNotAskedWhenTheBracketCannotBeOpened) {
  std::filesystem::create_directory("/var/tmp/torpi-output.log");
  bool is_mezz = false;
  EXPECT_EQ(ReadIsMezzAdapter(test_.run, fc_, is_mezz), 19u);
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(Mezzanine, FailureIsLoggedWithTheLibrarysAnswer) {
  bool is_mezz = false;
  const auto ask = [&] { ReadIsMezzAdapter(test_.run, fc_, is_mezz); };
  EXPECT_EQ(LoggedAt(kDebugFailure, ask), std::vector<std::string>{});
  Library().mezz_result = 0xFFFFFFFF;
  EXPECT_EQ(LoggedAt(kDebugFailure, ask),
            std::vector<std::string>{"TestCmdsProcessor::CmdTestCommon: Is mezzanine adapter failed err=-1"});
  std::filesystem::remove("/var/tmp/torpi-output.log");
  std::filesystem::create_directory("/var/tmp/torpi-output.log");
  EXPECT_EQ(LoggedAt(kDebugFailure, ask),
            std::vector<std::string>{
                "TestCmdsProcessor::CmdTestCommon: Failed to open /var/tmp/torpi-output.log file"});
}

}  // namespace
