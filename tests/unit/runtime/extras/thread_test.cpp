#include "runtime/extras/thread.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>

#include "support/unit_debug_log.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

void* StoreThreadId(void* parameter) {
  usleep(20000);
  *static_cast<std::atomic<pid_t>*>(parameter) = gettid();
  return nullptr;
}

TEST(KestThreadTest, RunsTheRoutineInAnotherThreadWhichTheDestructorJoins) {
  std::atomic<pid_t> id = 0;
  {
    KestThread thread(&StoreThreadId, &id);
    EXPECT_TRUE(thread.IsStarted());
  }
  EXPECT_NE(id, 0);
  EXPECT_NE(id, gettid());
}

std::atomic<void*> seen_parameter = nullptr;

void* StoreParameter(void* parameter) {
  seen_parameter = parameter;
  return nullptr;
}

TEST(KestThreadTest, ParameterIsTheObjectItselfWhenNoneIsGiven) {
  seen_parameter = nullptr;
  void* object = nullptr;
  {
    KestThread thread(&StoreParameter);
    object = &thread;
  }
  EXPECT_EQ(seen_parameter, object);
}

TEST(KestThreadTest, DetachedThreadIsNotJoined) {
  static CEvent may_end(false, true);
  static CEvent has_ended(false, true);
  const auto routine = [](void*) -> void* {
    may_end.Lock(kNoTimeLimit);
    has_ended.SetEvent();
    return nullptr;
  };
  {
    KestThread thread(routine);
    EXPECT_TRUE(thread.Detach());
    EXPECT_FALSE(thread.Detach());
  }
  EXPECT_FALSE(has_ended.Lock(0));  // still running: the destructor did not wait
  may_end.SetEvent();
  EXPECT_TRUE(has_ended.Lock(20000));
}

struct Calls {
  std::atomic<int> count = 0;
  CEvent second{false, true};
};

void Count(void* parameter) {
  auto* calls = static_cast<Calls*>(parameter);
  if (++calls->count == 2) calls->second.SetEvent();
}

TEST(KestLoopThreadTest, CallsTheFunctionAgainAndAgainAfterThreeSeconds) {
  Calls calls;
  const auto start = steady_clock::now();
  {
    KestLoopThread thread(&Count, &calls, 50);
    ASSERT_TRUE(calls.second.Lock(30000));
    EXPECT_GE(steady_clock::now() - start, milliseconds(3050));
  }
  const int count = calls.count;
  EXPECT_GE(count, 2);
  usleep(120000);
  EXPECT_EQ(calls.count, count);
}

TEST(KestLoopThreadTest, EarlyEndCallsNothing) {
  Calls calls;
  const auto start = steady_clock::now();
  { KestLoopThread thread(&Count, &calls, 1); }
  EXPECT_EQ(calls.count, 0);
  EXPECT_LT(steady_clock::now() - start, milliseconds(2500));
}

TEST(KestLoopThreadTest, LongestIntervalIsNoEndlessWaitForTheDestructor) {
  Calls calls;
  {
    KestLoopThread thread(&Count, &calls, UINT32_MAX);
    const auto end = steady_clock::now() + std::chrono::seconds(30);
    while (calls.count == 0 && steady_clock::now() < end) usleep(10000);
  }
  EXPECT_EQ(calls.count, 1);
}

TEST(KestLoopThreadTest, DestructorWaitsForADetachedThreadToo) {
  Calls calls;
  const auto start = steady_clock::now();
  {
    KestLoopThread thread(&Count, &calls, 1);
    EXPECT_TRUE(thread.Detach());
  }
  EXPECT_GE(steady_clock::now() - start, milliseconds(900));
  EXPECT_EQ(calls.count, 0);
}

using ThreadDump = DebugLogTest;

TEST_F(ThreadDump, NamesEveryMember) {
  SetMask("1");
  Calls calls;
  KestLoopThread thread(&Count, &calls, 0x51);
  thread.Dump("Here");
  const std::string content = Content();
  EXPECT_NE(content.find("Here::KestThread.m_hThread("), std::string::npos);
  EXPECT_NE(content.find("Here::CEvent.m_bSignalled("), std::string::npos);
  for (const char* member : {"m_pFunction", "m_pParam", "m_uIntervalMillisec"}) {
    EXPECT_NE(content.find(std::string("Here::KestLoopThread.") + member + "("), std::string::npos) << member;
  }
  EXPECT_NE(content.find(" - 0x51].\r\n"), std::string::npos);
}

}  // namespace
