#include "runtime/locks.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Runs a call in another thread and returns its result.
template <typename Call>
bool InAnotherThread(Call call) {
  bool result = false;
  std::thread thread([&] { result = call(); });
  thread.join();
  return result;
}

bool IsFree(CSyncObject& object) {
  return InAnotherThread([&] { return object.Lock(0) && object.Unlock(); });
}

// What every lock class keeps to.
struct LockClass {
  const char* name;
  std::unique_ptr<CMutex> (*make)();
};

std::unique_ptr<CMutex> MakeMutex() {
  return std::make_unique<CMutex>();
}
std::unique_ptr<CMutex> MakeSharedMutex() {
  return std::make_unique<CMutex>(MutexScope::kProcessShared);
}
std::unique_ptr<CMutex> MakeCriticalSection() {
  return std::make_unique<CCriticalSection>();
}

class LockTest : public ::testing::TestWithParam<LockClass> {
 protected:
  // Whether a thread could have the lock now; a critical section's own Lock would wait for it.
  bool IsFreeNow() {
    return InAnotherThread([&] { return lock_->CMutex::Lock(0) && lock_->Unlock(); });
  }

  std::unique_ptr<CMutex> lock_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Classes, LockTest,
                         ::testing::Values(LockClass{"CMutex", &MakeMutex},
                                           LockClass{"ProcessSharedCMutex", &MakeSharedMutex},
                                           LockClass{"CCriticalSection", &MakeCriticalSection}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(LockTest, SecondLockByTheOwnerReturnsTrueAtOnceAndTwoUnlocksAreNeeded) {
  ASSERT_TRUE(lock_->Lock(kNoTimeLimit));
  EXPECT_TRUE(lock_->Lock(kNoTimeLimit));
  EXPECT_FALSE(IsFreeNow());
  EXPECT_TRUE(lock_->Unlock());
  EXPECT_FALSE(IsFreeNow());
  EXPECT_TRUE(lock_->Unlock());
  EXPECT_TRUE(IsFreeNow());
}

TEST_P(LockTest, UnlockByAThreadThatIsNotTheOwnerReturnsFalse) {
  ASSERT_TRUE(lock_->Lock(kNoTimeLimit));
  EXPECT_FALSE(InAnotherThread([&] { return lock_->Unlock(); }));
  EXPECT_TRUE(lock_->Unlock());
}

TEST_P(LockTest, UnlockOfAFreeLockReturnsFalse) {
  EXPECT_FALSE(lock_->Unlock());
  ASSERT_TRUE(lock_->Lock(kNoTimeLimit));
  ASSERT_TRUE(lock_->Unlock());
  EXPECT_FALSE(lock_->Unlock());
}

TEST_P(LockTest, KeepsThreadsApart) {
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 1000; ++round) {
        lock_->Lock(kNoTimeLimit);
        ++count;
        lock_->Unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 4000);
}

TEST(CMutexTest, OwnerReentersWithATimeLimitToo) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(0));
  EXPECT_TRUE(mutex.Lock(0));
  EXPECT_TRUE(mutex.Unlock());
  EXPECT_TRUE(mutex.Unlock());
  EXPECT_FALSE(mutex.Unlock());
}

TEST(CMutexTest, LockReturnsFalseWhenTheTimeIsUsedUp) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  const auto start = steady_clock::now();
  EXPECT_FALSE(InAnotherThread([&] { return mutex.Lock(50); }));
  const auto elapsed = steady_clock::now() - start;
  EXPECT_GE(elapsed, milliseconds(49));
  EXPECT_LT(elapsed, milliseconds(5000));
  EXPECT_TRUE(mutex.Unlock());
}

TEST(CMutexTest, WaiterThatGaveUpHasLeftTheQueue) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  EXPECT_FALSE(InAnotherThread([&] { return mutex.Lock(5); }));
  EXPECT_TRUE(mutex.Unlock());
  EXPECT_TRUE(IsFree(mutex));
}

TEST(CMutexTest, TimedLockIsHadWhenTheOwnerUnlocksInTime) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  bool had = false;
  std::thread waiter([&] { had = mutex.Lock(10000) && mutex.Unlock(); });
  std::this_thread::sleep_for(milliseconds(20));
  EXPECT_TRUE(mutex.Unlock());
  waiter.join();
  EXPECT_TRUE(had);
}

TEST(CMutexTest, LockWithoutLimitBlocksUntilUnlocked) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  std::atomic<bool> had = false;
  std::thread waiter([&] {
    had = mutex.Lock(kNoTimeLimit);
    mutex.Unlock();
  });
  std::this_thread::sleep_for(milliseconds(30));
  EXPECT_FALSE(had);
  EXPECT_TRUE(mutex.Unlock());
  waiter.join();
  EXPECT_TRUE(had);
}

TEST(CMutexTest, WaitersWithATimeLimitAreServedInTheirOrder) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  std::vector<int> order;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i) {
    waiters.emplace_back([&mutex, &order, i] {
      if (!mutex.Lock(20000)) return;
      order.push_back(i);
      mutex.Unlock();
    });
    std::this_thread::sleep_for(milliseconds(50));
  }
  EXPECT_TRUE(mutex.Unlock());
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3}));
}

TEST(CMutexTest, MoreWaitersThanTheQueueHoldsAreAllServed) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  int served = 0;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 40; ++i) {
    waiters.emplace_back([&] {
      if (!mutex.Lock(20000)) return;
      ++served;
      mutex.Unlock();
    });
  }
  std::this_thread::sleep_for(milliseconds(50));
  EXPECT_TRUE(mutex.Unlock());
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(served, 40);
}

TEST(CMutexTest, ProcessSharedMutexKeepsProcessesApart) {
  void* memory = mmap(nullptr, sizeof(CMutex), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  auto* mutex = new (memory) CMutex(MutexScope::kProcessShared);
  int released[2];
  ASSERT_EQ(pipe(released), 0);
  ASSERT_TRUE(mutex->Lock(kNoTimeLimit));
  ASSERT_TRUE(mutex->Lock(kNoTimeLimit));
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // Inherits everything but the ownership.
    if (mutex->Unlock()) _exit(1);
    if (mutex->Lock(0)) _exit(2);
    char byte = 0;
    if (read(released[0], &byte, 1) != 1) _exit(3);
    if (!mutex->Lock(kNoTimeLimit)) _exit(4);
    if (!mutex->Unlock()) _exit(5);
    if (!mutex->Lock(5000)) _exit(6);
    _exit(mutex->Unlock() ? 0 : 7);
  }
  usleep(20000);
  EXPECT_TRUE(mutex->Unlock());
  EXPECT_TRUE(mutex->Unlock());
  EXPECT_EQ(write(released[1], "x", 1), 1);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  close(released[0]);
  close(released[1]);
  mutex->~CMutex();
  munmap(memory, sizeof(CMutex));
}

TEST(CCriticalSectionTest, IgnoresTheTimeLimitAndBlocks) {
  CCriticalSection section;
  ASSERT_TRUE(section.Lock(kNoTimeLimit));
  std::atomic<bool> returned = false;
  bool had = false;
  std::thread waiter([&] {
    had = section.Lock(0);
    returned = true;
    section.Unlock();
  });
  std::this_thread::sleep_for(milliseconds(30));
  EXPECT_FALSE(returned);
  EXPECT_TRUE(section.Unlock());
  waiter.join();
  EXPECT_TRUE(had);
}

TEST(CSingleLockTest, UnlocksInItsDestructor) {
  CMutex mutex;
  {
    CSingleLock lock(mutex, true);
    EXPECT_TRUE(lock.IsLocked());
    EXPECT_FALSE(IsFree(mutex));
  }
  EXPECT_TRUE(IsFree(mutex));
}

TEST(CSingleLockTest, LocksNotBeforeItIsAsked) {
  CMutex mutex;
  CSingleLock lock(mutex);
  EXPECT_FALSE(lock.IsLocked());
  EXPECT_TRUE(IsFree(mutex));
  EXPECT_TRUE(lock.Lock());
  EXPECT_TRUE(lock.Lock());  // held already, and not counted again
  EXPECT_FALSE(IsFree(mutex));
  EXPECT_TRUE(lock.Unlock());
  EXPECT_TRUE(IsFree(mutex));
}

TEST(CSingleLockTest, UnlockReturnsFalseWhenItHoldsNothing) {
  CMutex mutex;
  CSingleLock lock(mutex, true);
  EXPECT_TRUE(lock.Unlock());
  EXPECT_FALSE(lock.Unlock());
}

TEST(CSingleLockTest, FailedTimedLockHoldsNothing) {
  CMutex mutex;
  ASSERT_TRUE(mutex.Lock(kNoTimeLimit));
  EXPECT_FALSE(InAnotherThread([&] {
    CSingleLock lock(mutex);
    return lock.Lock(2) || lock.IsLocked();
  }));
  EXPECT_TRUE(mutex.Unlock());
}

using LockDump = DebugLogTest;

TEST_F(LockDump, NamesEveryMemberOfAMutexWithItsValue) {
  SetMask("1");
  CMutex mutex;
  mutex.Lock(kNoTimeLimit);
  mutex.Lock(kNoTimeLimit);
  mutex.Dump("Here");
  mutex.Unlock();
  mutex.Unlock();
  const std::string content = Content();
  EXPECT_NE(content.find("Here::CMutex.m_uLockCount(4) at address["), std::string::npos);
  EXPECT_NE(content.find(" - 0x2].\r\n"), std::string::npos);
  char owner[32];
  std::snprintf(owner, sizeof owner, " - 0x%x].\r\n", static_cast<unsigned>(gettid()));
  EXPECT_NE(content.find(owner), std::string::npos);
  for (const char* member : {"m_ownerThread", "m_trylockQueue", "m_accessMutex", "m_mutex"}) {
    EXPECT_NE(content.find(std::string("Here::CMutex.") + member + "("), std::string::npos) << member;
  }
}

TEST_F(LockDump, NamesTheClassOfACriticalSectionAndASingleLock) {
  SetMask("1");
  CCriticalSection section;
  section.Dump("A");
  CSingleLock lock(section);
  lock.Dump("B");
  const std::string content = Content();
  EXPECT_NE(content.find("A::CCriticalSection.m_uLockCount(4) at address["), std::string::npos);
  EXPECT_NE(content.find("B::CSingleLock.m_bLocked(1) at address["), std::string::npos);
}

}  // namespace
