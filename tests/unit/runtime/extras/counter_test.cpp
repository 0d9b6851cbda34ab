#include "runtime/extras/counter.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

TEST(KestCounterTest, StartsAtZeroOrTheValueGiven) {
  EXPECT_EQ(KestCounter().Value(), 0U);
  EXPECT_EQ(KestCounter(7).Value(), 7U);
}

TEST(KestCounterTest, CountsUpAndDown) {
  KestCounter counter(7);
  EXPECT_EQ(counter.Increment(), 8U);
  EXPECT_EQ(counter.Increment(), 9U);
  EXPECT_EQ(counter.Decrement(), 8U);
  EXPECT_EQ(counter.Value(), 8U);
}

TEST(KestCounterTest, WrapsAround) {
  KestCounter counter;
  EXPECT_EQ(counter.Decrement(), 0xffffffffU);
  EXPECT_EQ(counter.Increment(), 0U);
}

TEST(KestCounterTest, LosesNoCountAmongThreads) {
  KestCounter counter;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 500; ++round) counter.Increment();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counter.Value(), 2000U);
}

using CounterDump = DebugLogTest;

TEST_F(CounterDump, NamesTheValue) {
  SetMask("1");
  KestCounter(0x2a).Dump("Here");
  const std::string content = Content();
  EXPECT_NE(content.find("Here::KestCounter.m_uValue(4) at address["), std::string::npos);
  EXPECT_NE(content.find(" - 0x2a].\r\n"), std::string::npos);
}

}  // namespace
