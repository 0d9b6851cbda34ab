#include "diag/pattern_passes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/unit_command_run.h"

namespace {

constexpr std::uint32_t kSizes[] = {8, 512, 65535};

StatusCode ReadPassesOf(const Words& words, DiagTestRequest& request, std::uint32_t& increment) {
  const TestRun test(words);
  return ReadPassWords(test.run, {.max_increment = 100, .data_sizes = kSizes}, request, increment);
}

TEST(ReadPassWords, StoresWhatItReads) {
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  EXPECT_EQ(ReadPassesOf({"", "", "100", "512", "loop"}, request, increment), kSuccess);
  EXPECT_EQ(increment, 100u);
  EXPECT_EQ(request.data_size, 512u);
  EXPECT_EQ(request.on_error, OnErrorAction::kLoop);
  EXPECT_EQ(request.test_count, 0u);
}

TEST(ReadPassWords, RefusesWhatIsOutOfBounds) {
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  EXPECT_EQ(ReadPassesOf({"", "", "101", "8"}, request, increment), kInvalidParameter);
  EXPECT_EQ(ReadPassesOf({"", "", "0", "8"}, request, increment), kInvalidParameter);
  for (const char* size : {"", "0", "7", "9", "513", "65536", "-8", "4294967304", "18446744073709551624"}) {
    EXPECT_EQ(ReadPassesOf({"", "", "1", size}, request, increment), kInvalidParameter) << size;
  }
}

TEST(ReadPassWords, UnknownActionMeansToIgnore) {
  for (const char* word : {"", "Ignore", "halt", "stop it"}) {
    DiagTestRequest request = {};
    request.on_error = OnErrorAction::kStop;
    std::uint32_t increment = 0;
    EXPECT_EQ(ReadPassesOf({"", "", "1", "8", word}, request, increment), kSuccess);
    EXPECT_EQ(request.on_error, OnErrorAction::kIgnore) << word;
  }
}

TEST(SetTestCount, FillsBothPlaces) {
  DiagTestRequest request = {};
  SetTestCount(request, 0xFFFFFFFF);
  EXPECT_EQ(request.test_count, 0xFFFFFFFFu);
  EXPECT_EQ(request.test_count_again, 0xFFFFFFFFu);
}

// The pattern of a request, with its kind in front.
std::string PatternOf(const Words& words) {
  DiagTestRequest request = {};
  const TestRun test(words);
  if (ReadDataPattern(test.run, 0, request) != kSuccess) return "refused";
  return std::to_string(static_cast<std::uint32_t>(request.pattern_kind)) + ":" +
         std::string(request.pattern, strnlen(request.pattern, sizeof request.pattern));
}

TEST(ReadDataPattern, FixedPatternsAreTheirOwnCharacters) {
  EXPECT_EQ(PatternOf({"10100101"}), "5:10100101");
  EXPECT_EQ(PatternOf({"10100100"}), "0:");
  EXPECT_EQ(PatternOf({"cspat"}), "3:");
  EXPECT_EQ(PatternOf({}), "0:");
}

TEST(ReadDataPattern, CustomPatternComesFromItsOption) {
  EXPECT_EQ(PatternOf({"custom", "-d", "a-b-c-d-e-f-g-h"}), "4:abcdefgh");
  EXPECT_EQ(PatternOf({"custom", "--DATA-PATTERN", "a-b-c-d-e-f-g-hijkl"}), "4:abcdefgh");
  EXPECT_EQ(PatternOf({"custom", "-d", "a-b-c-d-e-f-g-"}), "4:abcdefg");
  EXPECT_EQ(PatternOf({"custom"}), "4:");
  EXPECT_EQ(PatternOf({"custom", "-d"}), "4:");
  EXPECT_EQ(PatternOf({"random", "-d", "x"}), "0:");
}

TEST(ReadDataPattern, EveryHyphenCounts) {
  const std::string good = "a-b-c-d-e-f-g-h";
  for (std::size_t i = 1; i < good.size(); i += 2) {
    std::string bad = good;
    bad[i] = '_';
    EXPECT_EQ(PatternOf({"custom", "-d", bad}), "refused") << bad;
    EXPECT_EQ(PatternOf({"custom", "-d", good.substr(0, i)}), "refused") << i;
  }
}

TEST(ReadDataPattern, LeavesTheWordsAsTheyAre) {
  const Words words = {"custom", "-d", "a-b-c-d-e-f-g-h"};
  const TestRun test(words);
  DiagTestRequest request = {};
  EXPECT_EQ(ReadDataPattern(test.run, 0, request), kSuccess);
  EXPECT_EQ(test.words, words);
}

TEST(CheckMaintenanceMode, NeedsBothFlags) {
  const TestRun test;
  FCProtocolEntry fc = {};
  EXPECT_EQ(CheckMaintenanceMode(test.run, fc), kSuccess);
  fc.driver_flags = 0x04;
  EXPECT_EQ(CheckMaintenanceMode(test.run, fc), kSuccess);
  fc.port_flags = 0x01;
  EXPECT_EQ(CheckMaintenanceMode(test.run, fc), kMaintenanceMode);
  fc.driver_flags = 0xfb;
  EXPECT_EQ(CheckMaintenanceMode(test.run, fc), kSuccess);
}

TEST(CountPass, CountsAndGoesOn) {
  PassCounters counters;
  EXPECT_TRUE(CountPass(true, OnErrorAction::kStop, counters));
  EXPECT_TRUE(CountPass(false, OnErrorAction::kIgnore, counters));
  EXPECT_TRUE(CountPass(false, OnErrorAction::kLoop, counters));
  EXPECT_EQ(counters.iteration, 3u);
  EXPECT_EQ(counters.succeeded, 1u);
  EXPECT_EQ(counters.failed, 2u);
}

TEST(CountPass, StopLeavesTheIteration) {
  PassCounters counters;
  EXPECT_TRUE(CountPass(true, OnErrorAction::kStop, counters));
  EXPECT_FALSE(CountPass(false, OnErrorAction::kStop, counters));
  EXPECT_EQ(counters.iteration, 1u);
  EXPECT_EQ(counters.failed, 1u);
}

}  // namespace
