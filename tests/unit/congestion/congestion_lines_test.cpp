#include "congestion/congestion_lines.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

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

TEST(NotificationLine, JoinsTheWordsAsTheyStand) {
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

TEST(CongestionLines, PutASectionHeadBetweenRulers) {
  EXPECT_EQ(Lines([](ReportText& text) {
              SectionHead(text, {"One ", "Two"});
            }),
            "      -----------------------------------\n"
            "      One \n"
            "      Two\n"
            "      -----------------------------------\n");
}

TEST(CounterLines, KeepTheOrderOfTheTable) {
  constexpr WideCounter kCounters[] = {{"Second", &SCMRStatisticsEntry::congestion_warnings},
                                       {"First", &SCMRStatisticsEntry::congestion_alarms}};
  SCMRStatisticsEntry entry = {};
  entry.congestion_alarms = 0xFFFFFFFFFFFFFFFF;
  entry.congestion_warnings = 1ull << 32;
  EXPECT_EQ(Lines([&](ReportText& text) { CounterLines(text, kCounters, entry); }),
            "      Second: 4294967296\n      First: 18446744073709551615\n");
}

}  // namespace
