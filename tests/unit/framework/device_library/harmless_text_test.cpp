#include "framework/device_library/harmless_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using std::string_literals::operator""s;

TEST(HarmlessText, KeepsTextsOfAnyLanguage) {
  const std::string text = "plain ~ \\ \"quoted\" Prüfstand 試験 😀";
  EXPECT_EQ(Harmless(text), text);
  EXPECT_EQ(Harmless(""), "");
  EXPECT_EQ(HarmlessLength(""), 0u);
}

TEST(HarmlessText, ShowsEveryControlCodeAsANumber) {
  for (int byte = 0; byte < 0x20; ++byte) {
    EXPECT_EQ(HarmlessLength(std::string(1, static_cast<char>(byte))), 0u) << byte;
  }
  EXPECT_EQ(Harmless("a\0b\x1b[2J\x7f"s), R"(a\x00b\x1b[2J\x7f)");
  EXPECT_EQ(Harmless("\u0080\u009b\u009f\u00a0"), "\\xc2\\x80\\xc2\\x9b\\xc2\\x9f\u00a0");
}

TEST(HarmlessText, ShowsMarksThatTurnOrEndALineAsNumbers) {
  for (const char* mark :
       {"\u061c", "\u200e", "\u200f", "\u2028", "\u2029", "\u202a", "\u202e", "\u2066", "\u2069"}) {
    EXPECT_EQ(HarmlessLength(mark), 0u) << mark;
  }
  for (const char* next : {"\u061b", "\u061d", "\u200d", "\u2010", "\u2027", "\u202f", "\u2065", "\u206a"}) {
    EXPECT_EQ(HarmlessLength(next), std::string(next).size()) << next;
  }
}

// Overlong, alone, cut, a half of a pair, beyond the last code point.
TEST(HarmlessText, ShowsWhatIsNoUtf8AsNumbers) {
  EXPECT_EQ(Harmless("\xc0\xaf|\xe0\x80\xaf|\xf0\x80\x80\xaf"), R"(\xc0\xaf|\xe0\x80\xaf|\xf0\x80\x80\xaf)");
  EXPECT_EQ(Harmless("\x9b|\xe8\xa9"), R"(\x9b|\xe8\xa9)");
  EXPECT_EQ(Harmless("\xed\xa0\x80|\xf4\x90\x80\x80|\xf8\x90\x80\x80|\xff"),
            R"(\xed\xa0\x80|\xf4\x90\x80\x80|\xf8\x90\x80\x80|\xff)");
  EXPECT_EQ(Harmless("\xf4\x8f\xbf\xbf"), "\xf4\x8f\xbf\xbf");
}

TEST(HarmlessText, KeepsLineEndsWhereAMessageHasSeveralLines) {
  EXPECT_EQ(Harmless("a\nb\r\n"), R"(a\x0ab\x0d\x0a)");
  EXPECT_EQ(Harmless("a\nb\r\n", LineEnds::kKept), "a\nb\\x0d\n");
}

}  // namespace
