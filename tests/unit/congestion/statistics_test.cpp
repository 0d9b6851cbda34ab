#include "congestion/statistics.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_debug_log.h"
#include "support/unit_files.h"
#include "unit/congestion/fake_congestion_calls.h"

namespace {

using Lines = std::vector<std::string>;

constexpr const char* kStars = "****************************************************\n";

std::string Failure(const char* message) {
  return std::string(kStars) + "Test:\nMessage: " + message + "\nTests: " + kStars;
}

constexpr StatusMessage kMessages[] = {
    kStatisticsReadError, {kStatisticsClearError, "not freed"}, kMaintenanceMode};
constexpr NodeClass kClass = {.name = "TestCmdsProcessor",
                              .help_words = "Test",
                              .commands = {},
                              .frame = {"Test", "Tests", "TestList"},
                              .messages = TableOf<kMessages>()};

class StatisticsList : public testing::Test {
 protected:
  StatisticsList() {
    Congestion() = {};
    Congestion().list = &element_;
  }

  // Shows the list by printing "shown"; the result is in `status_`, the failure lines in `log_`.
  std::string Show(StatusCode maintenance = kMaintenanceMode, StatusCode shown = kSuccess) {
    TestRun test({}, OUTPUT_CLI, kClass);
    return PrintedBy([&] {
      log_ = LoggedAt(kDebugFailure, [&] {
        status_ = ShowStatisticsList(test.run, fc_, maintenance, [&](const SCMRStatisticsEntry& list) {
          std::printf(&list == &element_ ? "shown\n" : "another list\n");
          return shown;
        });
      });
    });
  }

  NoLibraryOutputFile none_;
  FCProtocolEntry fc_ = {};
  SCMRStatisticsEntry element_ = {};
  StatusCode status_ = kNoCallback;
  Lines log_;
};

TEST_F(StatisticsList, IsShownAndFreed) {
  EXPECT_EQ(Show(), "shown\n");
  EXPECT_EQ(status_, kSuccess);
  EXPECT_EQ(Congestion().freed, std::vector<const SCMRStatisticsEntry*>{&element_});
  EXPECT_EQ(log_, Lines{});
}

TEST_F(StatisticsList, IsFreedAfterADisplayThatFailed) {
  EXPECT_EQ(Show(kMaintenanceMode, kMemoryError), "shown\n");
  EXPECT_EQ(status_, kMemoryError);
  EXPECT_EQ(Congestion().freed.size(), 1u);
}

TEST_F(StatisticsList, RefusedOneIsAReadError) {
  Congestion().list_result = 0xFFFFFFFF;
  EXPECT_EQ(Show(), Failure("Failed, Statistics read error"));
  EXPECT_EQ(status_, kStatisticsReadError);
  EXPECT_TRUE(Congestion().freed.empty());
  EXPECT_EQ(log_, Lines{"TestCmdsProcessor::CmdTestCommon: Get SCM statistics list failed err=-1"});
}

TEST_F(StatisticsList, OneRefusedInMaintenanceModeHasTheStatusOfTheCaller) {
  Congestion().list_result = 150;
  EXPECT_EQ(Show(), Failure("Failed, Command not supported when adapter port in maintenance mode"));
  EXPECT_EQ(status_, kMaintenanceMode);
  EXPECT_EQ(Show(kStatisticsReadError), Failure("Failed, Statistics read error"));
  EXPECT_EQ(status_, kStatisticsReadError);
}

TEST_F(StatisticsList, NullIsAReadError) {
  Congestion().list = nullptr;
  EXPECT_EQ(Show(), Failure("Failed, Statistics read error"));
  EXPECT_EQ(status_, kStatisticsReadError);
  EXPECT_TRUE(Congestion().freed.empty());
  EXPECT_EQ(log_, Lines{"TestCmdsProcessor::CmdTestCommon: SCM statistics list is NULL"});
}

TEST_F(StatisticsList, FreeingThatFailsAddsADocumentAlsoInMaintenanceMode) {
  for (const LibraryStatus result : {1u, 150u}) {
    Congestion().free_result = result;
    EXPECT_EQ(Show(), "shown\n" + Failure("not freed"));
    EXPECT_EQ(status_, kStatisticsClearError);
    EXPECT_EQ(log_, Lines{"TestCmdsProcessor::CmdTestCommon: Free SCM statistics list failed err=" +
                          std::to_string(result)});
  }
}

}  // namespace
