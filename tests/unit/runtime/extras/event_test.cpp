#include "runtime/extras/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::int32_t kLong = 20000;

// Threads that wait for an event, all of them waiting by the time the constructor returns.
class Waiters {
 public:
  Waiters(CEvent& event, int count, std::int32_t timeout) {
    for (int i = 0; i < count; ++i) {
      threads_.emplace_back([this, &event, timeout] {
        if (event.Lock(timeout)) ++released_;
      });
    }
    std::this_thread::sleep_for(milliseconds(100));
  }
  ~Waiters() { Join(); }

  int Released() const { return released_; }

  void WaitForReleased(int count) const {
    const auto end = steady_clock::now() + std::chrono::seconds(20);
    while (released_ < count && steady_clock::now() < end) std::this_thread::sleep_for(milliseconds(1));
  }

  void Join() {
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

 private:
  std::atomic<int> released_ = 0;
  std::vector<std::thread> threads_;
};

TEST(CEventTest, StartsAsAsked) {
  EXPECT_FALSE(CEvent(false, false).Lock(0));
  EXPECT_TRUE(CEvent(true, false).Lock(0));
  EXPECT_FALSE(CEvent(false, true).Lock(0));
  EXPECT_TRUE(CEvent(true, true).Lock(0));
}

TEST(CEventTest, AutoResetEventClearsItself) {
  CEvent event(true, false);
  EXPECT_TRUE(event.Lock(0));
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEventTest, ManualResetEventStaysSignalledUntilReset) {
  CEvent event(true, true);
  EXPECT_TRUE(event.Lock(0));
  EXPECT_TRUE(event.Lock(kNoTimeLimit));
  EXPECT_TRUE(event.ResetEvent());
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEventTest, ResetLeavesAnAutoResetEventAsItIs) {
  CEvent event(true, false);
  EXPECT_FALSE(event.ResetEvent());
  EXPECT_TRUE(event.Lock(0));
}

TEST(CEventTest, LockWaitsForItsTimeLimit) {
  CEvent event;
  const auto start = steady_clock::now();
  EXPECT_FALSE(event.Lock(50));
  const auto elapsed = steady_clock::now() - start;
  EXPECT_GE(elapsed, milliseconds(50));
  EXPECT_LT(elapsed, milliseconds(5000));
}

TEST(CEventTest, TimeLimitOverASecond) {
  CEvent event;
  const auto start = steady_clock::now();
  EXPECT_FALSE(event.Lock(1001));
  EXPECT_GE(steady_clock::now() - start, milliseconds(1001));
}

TEST(CEventTest, SetEventReleasesOneWaiterOfAnAutoResetEvent) {
  CEvent event;
  Waiters waiters(event, 2, 1000);
  event.SetEvent();
  waiters.Join();
  EXPECT_EQ(waiters.Released(), 1);
}

TEST(CEventTest, SetEventReleasesAllWaitersOfAManualResetEvent) {
  CEvent event(false, true);
  Waiters waiters(event, 3, kNoTimeLimit);
  EXPECT_EQ(waiters.Released(), 0);
  event.SetEvent();
  waiters.Join();
  EXPECT_EQ(waiters.Released(), 3);
}

TEST(CEventTest, SignalThatNobodyWaitsForStays) {
  CEvent event;
  event.SetEvent();
  event.SetEvent();
  EXPECT_TRUE(event.Lock(0));
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEventTest, PulseReleasesAllWhoWaitForAManualResetEventAndLeavesNoSignal) {
  CEvent event(false, true);
  Waiters waiters(event, 3, kLong);
  event.PulseEvent();
  waiters.WaitForReleased(3);
  EXPECT_EQ(waiters.Released(), 3);
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEventTest, PulseReleasesOneWhoWaitsForAnAutoResetEvent) {
  CEvent event;
  Waiters waiters(event, 2, 1000);
  event.PulseEvent();
  waiters.Join();
  EXPECT_EQ(waiters.Released(), 1);
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEventTest, PulseWithoutWaitersLeavesNoSignal) {
  CEvent auto_reset(true, false);
  auto_reset.PulseEvent();
  EXPECT_FALSE(auto_reset.Lock(0));
  CEvent manual_reset(true, true);
  manual_reset.PulseEvent();
  EXPECT_FALSE(manual_reset.Lock(0));
}

TEST(CEventTest, UnlockGivesTheSignalOfAnAutoResetEventBack) {
  CEvent event(true, false);
  ASSERT_TRUE(event.Lock(0));
  bool other = true;
  std::thread([&] { other = event.Unlock(); }).join();
  EXPECT_FALSE(other);
  EXPECT_TRUE(event.Unlock());
  EXPECT_FALSE(event.Unlock());
  EXPECT_TRUE(event.Lock(0));
}

TEST(CEventTest, UnlockOfAManualResetEventChangesNothing) {
  CEvent event(false, true);
  EXPECT_TRUE(event.Unlock());
  EXPECT_FALSE(event.Lock(0));
}

TEST(WaitForObjectsTest, ReturnsTheIndexOfTheOneItHad) {
  CEvent first;
  CEvent second(true);
  CEvent third(true);
  CSyncObject* objects[] = {&first, &second, &third};
  EXPECT_EQ(WaitForObjects(objects, 3, false, 0), 1U);
  EXPECT_EQ(WaitForObjects(objects, 3, false, 0), 2U);
  EXPECT_EQ(WaitForObjects(objects, 3, false, 0), 258U);
}

TEST(WaitForObjectsTest, Returns258WhenTheTimeIsUsedUp) {
  CEvent event;
  CSyncObject* objects[] = {&event};
  const auto start = steady_clock::now();
  EXPECT_EQ(WaitForObjects(objects, 1, false, 30), kWaitTimeout);
  EXPECT_GE(steady_clock::now() - start, milliseconds(30));
}

TEST(WaitForObjectsTest, Returns258ForNoObjects) {
  EXPECT_EQ(WaitForObjects(nullptr, 0, true, kNoTimeLimit), 258U);
}

TEST(WaitForObjectsTest, WaitsForAllOfThem) {
  CEvent first;
  CMutex second;
  CEvent third(true);
  CSyncObject* objects[] = {&first, &second, &third};
  std::thread signaller([&] {
    std::this_thread::sleep_for(milliseconds(30));
    first.SetEvent();
  });
  EXPECT_EQ(WaitForObjects(objects, 3, true, kNoTimeLimit), 0U);  // the first was the last to be had
  signaller.join();
  EXPECT_TRUE(second.Unlock());
  EXPECT_FALSE(third.Lock(0));
}

TEST(WaitForObjectsTest, GivesBackWhatItHadWhenNotAllCame) {
  CEvent first(true);
  CMutex second;
  CEvent third;
  CSyncObject* objects[] = {&first, &second, &third};
  EXPECT_EQ(WaitForObjects(objects, 3, true, 10), 258U);
  EXPECT_TRUE(first.Lock(0));
  EXPECT_FALSE(second.Unlock());
}

// Can't be had, and counts how often it is tried.
class NeverHad : public CSyncObject {
 public:
  bool Lock(std::int32_t timeout) override {
    EXPECT_EQ(timeout, 0);
    ++tries_;
    return false;
  }
  bool Unlock() override { return false; }
  void Dump(const char*) const override {}
  int Tries() const { return tries_; }

 private:
  int tries_ = 0;
};

TEST(WaitForObjectsTest, WithoutTimeTriesEachOnce) {
  NeverHad first;
  NeverHad second;
  CSyncObject* objects[] = {&first, &second};
  EXPECT_EQ(WaitForObjects(objects, 2, false, 0), 258U);
  EXPECT_EQ(first.Tries(), 1);
  EXPECT_EQ(second.Tries(), 1);
}

using EventDump = DebugLogTest;

TEST_F(EventDump, NamesEveryMember) {
  SetMask("1");
  CEvent(true, true).Dump("Here");
  const std::string content = Content();
  for (const char* member : {"m_mutex", "m_cond", "m_ownerThread", "m_bSignalled", "m_bManualReset"}) {
    EXPECT_NE(content.find(std::string("Here::CEvent.") + member + "("), std::string::npos) << member;
  }
}

// A line says " - 0x1]" of a member that is true.
TEST_F(EventDump, SaysWhetherItIsSignalledAndOfWhichKind) {
  SetMask("1");
  CEvent(true, false).Dump("Signalled");
  CEvent(false, true).Dump("Manual");
  const std::string content = Content();
  const auto value = [&content](const char* member) {
    const std::size_t line = content.find(std::string(member) + "(1) at address[");
    const std::size_t begin = content.find(" - ", line) + 3;
    return line == std::string::npos ? "no line" : content.substr(begin, content.find(']', line) - begin);
  };
  EXPECT_EQ(value("Signalled::CEvent.m_bSignalled"), "0x1");
  EXPECT_EQ(value("Signalled::CEvent.m_bManualReset"), "0x0");
  EXPECT_EQ(value("Manual::CEvent.m_bSignalled"), "0x0");
  EXPECT_EQ(value("Manual::CEvent.m_bManualReset"), "0x1");
}

}  // namespace
