#include "framework/code_text.h"

#include <gtest/gtest.h>

namespace {

constexpr CodeText kTable[] = {{1, "Online"}, {3, "Offline"}, {3, "never reached"}, {0xFFFFFFFF, "Last"}};

TEST(TextOfCode, GivesTheTextOfTheFirstRowWithTheCode) {
  EXPECT_STREQ(TextOfCode(kTable, 1), "Online");
  EXPECT_STREQ(TextOfCode(kTable, 3), "Offline");
  EXPECT_STREQ(TextOfCode(kTable, 0xFFFFFFFF), "Last");
}

TEST(TextOfCode, GivesUnknownForACodeWithoutARow) {
  EXPECT_STREQ(TextOfCode(kTable, 0), "Unknown");
  EXPECT_STREQ(TextOfCode(kTable, 2), "Unknown");
  EXPECT_STREQ(TextOfCode({}, 1), "Unknown");
}

TEST(TextOfCode, GivesTheCallersTextForACodeWithoutARow) {
  EXPECT_STREQ(TextOfCode(kTable, 2, "Reserved"), "Reserved");
  EXPECT_STREQ(TextOfCode(kTable, 3, "Reserved"), "Offline");
}

TEST(BoolText, IsTrueOrFalse) {
  EXPECT_STREQ(BoolText(true), "true");
  EXPECT_STREQ(BoolText(false), "false");
}

}  // namespace
