#include "runtime/timer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "support/unit_debug_log.h"

namespace {

// Runs a test in a time zone of its own.
class TimerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* zone = std::getenv("TZ");
    had_zone_ = zone != nullptr;
    if (had_zone_) zone_ = zone;
    SetZone("UTC0");
  }

  void TearDown() override {
    if (had_zone_) {
      SetZone(zone_.c_str());
    } else {
      unsetenv("TZ");
      tzset();
    }
  }

  static void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }

  static KestTimer TimerOver(std::int64_t milliseconds) {
    KestTimer timer;
    timer.Start(timeval{1000, 0});
    timer.Stop(timeval{1000 + milliseconds / 1000, milliseconds % 1000 * 1000});
    return timer;
  }

 private:
  bool had_zone_ = false;
  std::string zone_;
};

// 1,700,000,000 seconds are 2023-11-14 22:13:20 UTC.

TEST_F(TimerTest, StartTextIsLocalTimeWithoutPaddedDate) {
  KestTimer timer;
  timer.Start(timeval{1700000000, 7999});
  EXPECT_EQ(timer.StartText(), "11/14/2023 22:13:20.007");
  timer.Start(timeval{0, 0});
  EXPECT_EQ(timer.StartText(), "1/1/1970 00:00:00.000");
}

TEST_F(TimerTest, TextsFollowTheTimeZone) {
  SetZone("EST5");
  KestTimer timer;
  timer.Start(timeval{1700000000, 999999});
  EXPECT_EQ(timer.StartText(), "11/14/2023 17:13:20.999");
}

TEST_F(TimerTest, StopStampsTheEndOnce) {
  KestTimer timer;
  timer.Start(timeval{1700000000, 0});
  timer.Stop(timeval{1700000001, 500000});
  timer.Stop(timeval{1700000009, 0});
  timer.Stop();
  EXPECT_EQ(timer.StopText(), "11/14/2023 22:13:21.500");
  EXPECT_EQ(timer.ElapsedMilliseconds(), 1500);
}

TEST_F(TimerTest, StartForgetsTheStop) {
  KestTimer timer = TimerOver(1500);
  timer.Start(timeval{2000, 0});
  EXPECT_EQ(timer.StopText(), "");
  timer.Stop(timeval{2000, 250000});
  EXPECT_EQ(timer.ElapsedMilliseconds(), 250);
}

TEST_F(TimerTest, TextsOfStampsThatWereNotSetAreEmpty) {
  KestTimer timer;
  EXPECT_EQ(timer.StartText(), "");
  EXPECT_EQ(timer.StopText(), "");
  timer.Start();
  EXPECT_NE(timer.StartText(), "");
  EXPECT_EQ(timer.StopText(), "");
}

TEST_F(TimerTest, ElapsedIsZeroWithoutAStart) {
  KestTimer timer;
  EXPECT_EQ(timer.ElapsedMilliseconds(), 0);
  EXPECT_EQ(timer.ElapsedText(), "00:00:00.000");
}

TEST_F(TimerTest, ElapsedRunsToThePresentTimeWhenNotStopped) {
  KestTimer timer;
  timeval now{};
  gettimeofday(&now, nullptr);
  now.tv_sec -= 100;
  timer.Start(now);
  EXPECT_GE(timer.ElapsedMilliseconds(), 100000);
  EXPECT_LT(timer.ElapsedMilliseconds(), 110000);
}

TEST_F(TimerTest, ElapsedStaysTheSameWhenStopped) {
  KestTimer timer;
  timeval now{};
  gettimeofday(&now, nullptr);
  timer.Start(now);
  timer.Stop();
  const std::int64_t elapsed = timer.ElapsedMilliseconds();
  const timespec pause{0, 5000000};
  nanosleep(&pause, nullptr);
  EXPECT_EQ(timer.ElapsedMilliseconds(), elapsed);
}

TEST_F(TimerTest, ElapsedBorrowsFromTheSeconds) {
  KestTimer timer;
  timer.Start(timeval{10, 900000});
  timer.Stop(timeval{12, 100000});
  EXPECT_EQ(timer.ElapsedMilliseconds(), 1200);
}

TEST_F(TimerTest, ElapsedIsZeroWhenTheClockWasSetBack) {
  KestTimer timer;
  timer.Start(timeval{1000, 500000});
  timer.Stop(timeval{1000, 0});
  EXPECT_EQ(timer.ElapsedMilliseconds(), 0);
  EXPECT_EQ(timer.ElapsedText(), "00:00:00.000");
}

TEST_F(TimerTest, ElapsedTextOfLessThanADay) {
  EXPECT_EQ(TimerOver(7).ElapsedText(), "00:00:00.007");
  EXPECT_EQ(TimerOver(59999).ElapsedText(), "00:00:59.999");
  EXPECT_EQ(TimerOver(3723004).ElapsedText(), "01:02:03.004");
  EXPECT_EQ(TimerOver(86399999).ElapsedText(), "23:59:59.999");
}

TEST_F(TimerTest, ElapsedTextFromOneDayOn) {
  EXPECT_EQ(TimerOver(86400000).ElapsedText(), "1 days 00:00:00.000");
  EXPECT_EQ(TimerOver(10LL * 86400000 + 1).ElapsedText(), "10 days 00:00:00.001");
}

TEST_F(TimerTest, ElapsedTextAfter90000SecondsIsOneDayAndOneHour) {
  EXPECT_EQ(TimerOver(90000000).ElapsedText(), "1 days 01:00:00.000");
}

using TimerDump = DebugLogTest;

TEST_F(TimerDump, NamesEveryMember) {
  SetMask("1");
  KestTimer timer;
  timer.Start(timeval{0x1234, 0});
  timer.Dump("Here");
  const std::string content = Content();
  EXPECT_NE(content.find("Here::KestTimer.mStartTime(16) at address["), std::string::npos);
  EXPECT_NE(content.find(" - 0x1234]."), std::string::npos);
  for (const char* member : {"mStopTime", "mstrTimeStart", "mstrTimeStop", "mstrTimeElapsed"}) {
    EXPECT_NE(content.find(std::string("Here::KestTimer.") + member + "("), std::string::npos) << member;
  }
}

}  // namespace
