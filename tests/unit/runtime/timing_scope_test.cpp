#include "runtime/timing_scope.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

using Strings = std::vector<std::string>;
using TimingScopeTest = DebugLogTest;
using TraceScopeTest = DebugLogTest;

TEST_F(TimingScopeTest, LogsStartAndReturnWithoutALevel) {
  SetMask("1024");
  {
    TimingScope scope("Main::Initialize");
    EXPECT_EQ(Lines(), Strings{Head() + "STARTING Main::Initialize"});
  }
  EXPECT_EQ(Lines(), (Strings{Head() + "STARTING Main::Initialize", Head() + "RETURNING Main::Initialize"}));
}

TEST_F(TimingScopeTest, BuildsTheNamesOfConstructorAndDestructor) {
  SetMask("1");
  { TimingScope scope("AdapterInfoCmdsProcessor", TimedFunction::kConstructor); }
  { TimingScope scope("AdapterInfoCmdsProcessor", TimedFunction::kDestructor); }
  EXPECT_EQ(Lines(), (Strings{Head() + "STARTING AdapterInfoCmdsProcessor::AdapterInfoCmdsProcessor()",
                              Head() + "RETURNING AdapterInfoCmdsProcessor::AdapterInfoCmdsProcessor()",
                              Head() + "STARTING AdapterInfoCmdsProcessor::~AdapterInfoCmdsProcessor()",
                              Head() + "RETURNING AdapterInfoCmdsProcessor::~AdapterInfoCmdsProcessor()"}));
}

TEST_F(TimingScopeTest, From300MillisecondsOnLogsTheElapsedTime) {
  SetMask("1");
  {
    TimingScope scope("Slow::Slow()");
    const timespec pause{0, 310000000};
    nanosleep(&pause, nullptr);
  }
  const Strings lines = Lines();
  ASSERT_EQ(lines.size(), 2U);
  const std::string head = Head() + "RETURNING Slow::Slow() ... elapsed ";
  ASSERT_TRUE(lines[1].starts_with(head)) << lines[1];
  const std::string elapsed = lines[1].substr(head.size());
  EXPECT_EQ(elapsed.size(), 12U);
  EXPECT_GE(elapsed, "00:00:00.310");
  EXPECT_LT(elapsed, "00:00:10.000");
}

TEST_F(TimingScopeTest, Below300MillisecondsLogsNoElapsedTime) {
  SetMask("1");
  const Strings expected{Head() + "STARTING Quick::Quick()", Head() + "RETURNING Quick::Quick()"};
  // On a busy machine the pause may take longer than it was asked to: then it is made again.
  for (int attempt = 0; attempt < 10; ++attempt) {
    const auto begin = std::chrono::steady_clock::now();
    {
      TimingScope scope("Quick::Quick()");
      const timespec pause{0, 250000000};
      nanosleep(&pause, nullptr);
    }
    const bool was_quick = std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(300);
    Strings lines = Lines();
    lines.erase(lines.begin(), lines.end() - 2);
    if (!was_quick) continue;
    EXPECT_EQ(lines, expected);
    return;
  }
  FAIL() << "no pause of 250 milliseconds ended before 300";
}

TEST_F(TimingScopeTest, MaskZeroWritesNothing) {
  { TimingScope scope("Silent::Silent()"); }
  EXPECT_EQ(Content(), "");
}

TEST_F(TimingScopeTest, ScopeThatBeganSilentEndsSilent) {
  {
    TimingScope scope("Silent::Silent()");
    SetMask("1");
  }
  EXPECT_EQ(Content(), "");
}

TEST_F(TraceScopeTest, LogsEntryAndExitAtLevel1) {
  SetMask("1");
  {
    TraceScope trace({"AdapterCmdsProcessor", "CmdList"});
    EXPECT_EQ(Lines(), Strings{Head("INFORMATION") + "AdapterCmdsProcessor::CmdList: Entered"});
  }
  EXPECT_EQ(Lines(), (Strings{Head("INFORMATION") + "AdapterCmdsProcessor::CmdList: Entered",
                              Head("INFORMATION") + "AdapterCmdsProcessor::CmdList: Exiting"}));
}

TEST_F(TraceScopeTest, OtherLevelsDoNotTrace) {
  SetMask("65534");
  { TraceScope trace({"AdapterCmdsProcessor", "CmdList"}); }
  EXPECT_EQ(Content(), "");
}

}  // namespace
