#include "config/options.h"

#include <gtest/gtest.h>

#include <string>

#include "support/unit_command_run.h"

namespace {

TEST(NumberOfTest, TakesWhatItCan) {
  EXPECT_EQ(NumberOf("12"), 12u);
  EXPECT_EQ(NumberOf("12abc"), 12u);
  EXPECT_EQ(NumberOf(" +12"), 12u);
  EXPECT_EQ(NumberOf("007"), 7u);
  EXPECT_EQ(NumberOf("0x10"), 0u);
  EXPECT_EQ(NumberOf("abc"), 0u);
  EXPECT_EQ(NumberOf(""), 0u);
}

TEST(NumberOfTest, KeepsTheLow32Bits) {
  EXPECT_EQ(NumberOf("4294967295"), 0xFFFFFFFFu);
  EXPECT_EQ(NumberOf("4294967296"), 0u);
  EXPECT_EQ(NumberOf("4294967301"), 5u);
  EXPECT_EQ(NumberOf("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(NumberOf("99999999999999999999999"), 0xFFFFFFFFu);
}

TEST(ReadNumberTest, KeepsToItsRule) {
  EXPECT_EQ(ReadNumber("7", {.limit = 7}), 7u);
  EXPECT_EQ(ReadNumber("8", {.limit = 7}), std::nullopt);
  EXPECT_EQ(ReadNumber("-1", {.limit = 7}), std::nullopt);
  EXPECT_EQ(ReadNumber("word", {.limit = 7}), 0u);
  EXPECT_EQ(ReadNumber("4294967295", {}), 0xFFFFFFFFu);
  constexpr std::uint32_t kOnly[] = {5, 6};
  EXPECT_EQ(ReadNumber("6", {.only = kOnly}), 6u);
  EXPECT_EQ(ReadNumber("4", {.only = kOnly}), std::nullopt);
  EXPECT_EQ(ReadNumber("word", {.only = kOnly}), std::nullopt);
}

TEST(ReadTrueFalseTest, InAnyCase) {
  EXPECT_EQ(ReadTrueFalse("TRUE"), true);
  EXPECT_EQ(ReadTrueFalse("False"), false);
  for (const char* const word : {"", "1", "0", "yes", "true ", "truee", "tru"}) {
    EXPECT_EQ(ReadTrueFalse(word), std::nullopt) << word;
  }
}

TEST(FindCodeTest, InAnyCase) {
  constexpr CodeText kTable[] = {{7, "Seven"}, {0, "None"}};
  ASSERT_NE(FindCode(kTable, "sEVEN"), nullptr);
  EXPECT_EQ(FindCode(kTable, "sEVEN")->code, 7u);
  EXPECT_EQ(FindCode(kTable, "Seven "), nullptr);
  EXPECT_EQ(FindCode(kTable, ""), nullptr);
}

class TakeOptionTest : public testing::Test {
 protected:
  // The value that the check sees; "none" when it is not called.
  std::string ValueOf(const OptionName& option) {
    std::string seen = "none";
    EXPECT_EQ(TakeOption(test_.run, option,
                         [&](const std::string& value) {
                           seen = value;
                           return CheckResult{};
                         }),
              kSuccess);
    return seen;
  }

  TestRun test_{{"port", "-a", "1", "--long", "2", "-A", "3", "-b"}};
};

TEST_F(TakeOptionTest, IsSearchedForInAllWords) {
  EXPECT_EQ(ValueOf({"--other", "-a"}), "1");
  EXPECT_EQ(ValueOf({"--LONG", "-x"}), "2");
  EXPECT_EQ(ValueOf({"--none", "-b"}), "none");
  EXPECT_EQ(ValueOf({}), "none");
}

TEST_F(TakeOptionTest, GivesTheStatusOfItsCheck) {
  EXPECT_EQ(TakeOption(test_.run, {"--long", "-l"}, [](const std::string&) { return kOutOfRange; }),
            kInvalidParameter);
  EXPECT_EQ(TakeOption(test_.run, {"--none", "-b"}, [](const std::string&) { return kOutOfRange; }),
            kSuccess);
}

}  // namespace
