#include "runtime/core_services.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

// Prints while it lives, and collects what is printed.
class CoreLogTest : public ::testing::Test {
 protected:
  void SetUp() override { ::testing::internal::CaptureStdout(); }

  void TearDown() override {
    if (!collected_) ::testing::internal::GetCapturedStdout();
    SetCoreLogQuiet(1);
  }

  std::string Printed() {
    collected_ = true;
    return ::testing::internal::GetCapturedStdout();
  }

 private:
  bool collected_ = false;
};

TEST_F(CoreLogTest, IsQuietByDefault) {
  EXPECT_EQ(CoreLogMessage(kCoreError, "message %d", 1), 0);
  EXPECT_EQ(Printed(), "");
}

TEST_F(CoreLogTest, AnyNonzeroFlagKeepsItQuiet) {
  SetCoreLogQuiet(-5);
  EXPECT_EQ(CoreLogMessage(kCoreError, "message"), 0);
  EXPECT_EQ(Printed(), "");
}

TEST_F(CoreLogTest, PrintsTypeAndMessageWhenNotQuiet) {
  SetCoreLogQuiet(0);
  EXPECT_EQ(CoreLogMessage(1, "port %d is %s", 3, "up"), 0);
  EXPECT_EQ(CoreLogMessage(100, "x"), 0);
  EXPECT_EQ(CoreLogMessage(7, "y"), 0);
  EXPECT_EQ(Printed(), "Info: port 3 is up\r\nDebug: x\r\nUnknown: y\r\n");
}

TEST_F(CoreLogTest, CutsTheMessageAt2047Characters) {
  SetCoreLogQuiet(0);
  EXPECT_EQ(CoreLogMessage(2, "%s", std::string(5000, 'x').c_str()), 0);
  EXPECT_EQ(Printed(), "Warning: " + std::string(2047, 'x') + "\r\n");
}

TEST_F(CoreLogTest, FinishedLineLosesConversionsAndIsNeverAFormat) {
  SetCoreLogQuiet(0);
  EXPECT_EQ(CoreLogMessage(3, "%s", "a%sb%nc 100%% 5%!"), 0);
  EXPECT_EQ(Printed(), "Error: abc 100% 5%!\r\n");
}

TEST_F(CoreLogTest, IgnoresANullFormat) {
  SetCoreLogQuiet(0);
  const char* format = nullptr;
  EXPECT_EQ(CoreLogMessage(3, format, 0), 0);
  EXPECT_EQ(Printed(), "");
}

TEST(CoreMemory, CoreMallocOfZeroReturnsNull) {
  EXPECT_EQ(CoreMalloc(0), nullptr);
}

TEST(CoreMemory, CoreZMallocOfZeroReturnsNull) {
  EXPECT_EQ(CoreZMalloc(0), nullptr);
}

TEST(CoreMemory, CoreFreeOfNullDoesNothing) {
  CoreFree(nullptr);
  void* block = CoreMalloc(16);
  EXPECT_NE(block, nullptr);  // the heap is as sound as before
  CoreFree(block);
}

TEST(CoreMemory, CoreZMallocZeroesAUsedBlock) {
  constexpr std::size_t kSize = 4096;
  auto* used = static_cast<unsigned char*>(CoreMalloc(kSize));
  ASSERT_NE(used, nullptr);
  for (std::size_t i = 0; i < kSize; ++i) used[i] = 0xff;
  CoreFree(used);
  auto* block = static_cast<unsigned char*>(CoreZMalloc(kSize));
  ASSERT_NE(block, nullptr);
  for (std::size_t i = 0; i < kSize; ++i) ASSERT_EQ(block[i], 0) << i;
  CoreFree(block);
}

TEST(TranslateMessageType, NamesTheFourTypes) {
  EXPECT_STREQ(TranslateMessageTypeToString(1), "Info");
  EXPECT_STREQ(TranslateMessageTypeToString(2), "Warning");
  EXPECT_STREQ(TranslateMessageTypeToString(3), "Error");
  EXPECT_STREQ(TranslateMessageTypeToString(100), "Debug");
}

TEST(TranslateMessageType, AnyOtherIsUnknown) {
  for (const int type : {0, 4, 99, 101, -1, INT32_MAX}) {
    EXPECT_STREQ(TranslateMessageTypeToString(type), "Unknown") << type;
  }
}

}  // namespace
