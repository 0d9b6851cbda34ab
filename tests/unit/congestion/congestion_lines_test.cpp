#include "congestion/congestion_lines.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "framework/device_library/target_statistics_records.h"

namespace {

std::string Lines(const std::function<void(ReportText&)>& write) {
  ReportText text(8192);
  write(text);
  return text.Text();
}

constexpr NotificationWords kTable[] = {{1, "One, "}, {4, "Three"}};

std::string Notification(std::uint16_t mask) {
  return Lines([mask](ReportText& text) { NotificationLine(text, mask, kTable); });
}

TEST(NotificationLine, JoinsTheWordsAsTheyAre) {
  EXPECT_EQ(Notification(1), "      Congestion Notification: One, \n");
  EXPECT_EQ(Notification(4), "      Congestion Notification: Three\n");
  EXPECT_EQ(Notification(5), "      Congestion Notification: One, Three\n");
  EXPECT_EQ(Notification(0xFFFF), "      Congestion Notification: One, Three\n");
}

TEST(NotificationLine, IsNoneWithoutAnyBit) {
  EXPECT_EQ(Notification(0), "      Congestion Notification: None\n");
}

TEST(NotificationLine, IsEmptyWithUnknownBitsAlone) {
  EXPECT_EQ(Notification(2), "\n");
  EXPECT_EQ(Notification(0x8000), "\n");
}

TEST(CongestionLines, ShowMillisecondsAndFlags) {
  EXPECT_EQ(Lines([](ReportText& text) { MillisecondsLine(text, "L", 0xFFFFFFFF); }),
            "      L: 4294967295 (ms)\n");
  EXPECT_EQ(Lines([](ReportText& text) { YesNoLine(text, "L", true); }), "      L: Yes\n");
  EXPECT_EQ(Lines([](ReportText& text) { YesNoLine(text, "L", false); }), "      L: No\n");
}

TEST(CounterLines, KeepTheOrderOfTheTable) {
  constexpr Counter<SCMRStatisticsEntry, std::uint64_t> kCounters[] = {
      {"Second", &SCMRStatisticsEntry::congestion_warnings},
      {"First", &SCMRStatisticsEntry::congestion_alarms}};
  SCMRStatisticsEntry entry = {};
  entry.congestion_alarms = 0xFFFFFFFFFFFFFFFF;
  entry.congestion_warnings = 1ull << 32;
  EXPECT_EQ(Lines([&](ReportText& text) { CounterLines(text, kCounters, entry); }),
            "      Second: 4294967296\n      First: 18446744073709551615\n");
}

TEST(CounterLines, ShowTheGreatestNumberOf32Bits) {
  constexpr Counter<TargetPortStatistics, std::uint32_t> kCounters[] = {
      {"L", &TargetPortStatistics::link_failure}};
  TargetPortStatistics statistics = {};
  statistics.link_failure = 0xFFFFFFFF;
  EXPECT_EQ(Lines([&](ReportText& text) { CounterLines(text, kCounters, statistics); }),
            "      L: 4294967295\n");
}

// An element whose counters are 1, 2, 3, ... from the first one on, in the order of the record. One place
// between them is no counter.
SCMRStatisticsEntry CountedElement() {
  SCMRStatisticsEntry entry = {};
  constexpr std::size_t kFirst = 48;
  constexpr std::size_t kEnd = 264;
  for (std::size_t offset = kFirst; offset < kEnd; offset += 8) {
    const std::uint64_t value = (offset - kFirst) / 8 + 1;
    std::memcpy(reinterpret_cast<char*>(&entry) + offset, &value, sizeof value);
  }
  return entry;
}

TEST(StatisticsLines, OfAPort) {
  const SCMRStatisticsEntry entry = CountedElement();
  EXPECT_EQ(Lines([&](ReportText& text) { StatisticsLines(text, entry, StatisticsOwner::kPort); }),
            "      -----------------------------------\n"
            "      Congestion Mitigation\n"
            "      -----------------------------------\n"
            "      Congestion Alarm Count: 1\n"
            "      Congestion Warning Count: 2\n"
            "      Cleared Congestion Count: 3\n"
            "      Throttled Up Count: 5\n"
            "      Throttled Down Count: 4\n"
            "      Bottomed Out Count: 7\n"
            "      Returned Busy Count: 6\n"
            "      -----------------------------------\n"
            "      Rx Fabric Performance Impact \n"
            "      Notifications\n"
            "      -----------------------------------\n"
            "      Link Failure Count: 8\n"
            "      Link Unknown Event Count: 9\n"
            "      Loss Of Sync Count: 10\n"
            "      Loss Of Signal Count: 11\n"
            "      Link Device Specific Event Count: 15\n"
            "      Primitive Sequence Protocol Error Count: 12\n"
            "      Invalid Transmission Word Count: 13\n"
            "      Invalid CRC Count: 14\n"
            "      Link Uncorrectable FEC Count: 27\n"
            "      Delivery Failure Unknown Count: 16\n"
            "      Delivery Timeout Count: 17\n"
            "      Delivery Unable To Route Count: 18\n"
            "      Delivery Failure Device Specific Count: 19\n"
            "      Congestion Clear Count: 20\n"
            "      Congestion Lost Credit Count: 21\n"
            "      Congestion Credit Stall Count: 22\n"
            "      Congestion Oversubscription Count: 23\n"
            "      Congestion Device Specific Count: 24\n");
}

TEST(StatisticsLines, OfATargetLackSignalsAndDeliveriesAndEndWithPun) {
  const SCMRStatisticsEntry entry = CountedElement();
  EXPECT_EQ(Lines([&](ReportText& text) { StatisticsLines(text, entry, StatisticsOwner::kTarget); }),
            "      -----------------------------------\n"
            "      Congestion Mitigation\n"
            "      -----------------------------------\n"
            "      Cleared Congestion Count: 3\n"
            "      Throttled Up Count: 5\n"
            "      Throttled Down Count: 4\n"
            "      Bottomed Out Count: 7\n"
            "      Returned Busy Count: 6\n"
            "      -----------------------------------\n"
            "      Rx Fabric Performance Impact \n"
            "      Notifications\n"
            "      -----------------------------------\n"
            "      Link Failure Count: 8\n"
            "      Link Unknown Event Count: 9\n"
            "      Loss Of Sync Count: 10\n"
            "      Loss Of Signal Count: 11\n"
            "      Link Device Specific Event Count: 15\n"
            "      Primitive Sequence Protocol Error Count: 12\n"
            "      Invalid Transmission Word Count: 13\n"
            "      Invalid CRC Count: 14\n"
            "      Link Uncorrectable FEC Count: 27\n"
            "      Congestion Clear Count: 20\n"
            "      Congestion Lost Credit Count: 21\n"
            "      Congestion Credit Stall Count: 22\n"
            "      Congestion Oversubscription Count: 23\n"
            "      Congestion Device Specific Count: 24\n"
            "      PUN Count: 26\n");
}

}  // namespace
