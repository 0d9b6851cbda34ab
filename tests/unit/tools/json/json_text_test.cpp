#include "tools/json/json_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace zfc_json {
namespace {

using namespace std::string_view_literals;

std::string Json(std::string_view text) {
  std::string json;
  AppendJsonString(json, text, EncodingOf(text));
  return json;
}

TEST(JsonString, EscapesWhatJsonReserves) {
  struct Row {
    std::string_view text;
    const char* json;
  };
  constexpr Row kRows[] = {
      {"", R"("")"},
      {"Adapter_ZX100_AB12345", R"("Adapter_ZX100_AB12345")"},
      {"a\"b\\c/d", R"("a\"b\\c/d")"},
      {"\n\t\r", R"("\n\t\r")"},
      {"\0\1\x1f "sv, R"("\u0000\u0001\u001f ")"},
      {"\x7f", R"("\u007f")"},
      {"<&>'%", R"("<&>'%")"},
  };
  for (const Row& row : kRows) EXPECT_EQ(Json(row.text), row.json) << row.text;
}

TEST(JsonString, KeepsUtf8) {
  EXPECT_EQ(Json("Gr\xC3\xB6\xC3\x9F"
                 "e"),
            "\"Gr\xC3\xB6\xC3\x9F"
            "e\"");
  EXPECT_EQ(Json("\xE2\x82\xAC \xF0\x9F\x98\x80"), "\"\xE2\x82\xAC \xF0\x9F\x98\x80\"");
}

TEST(JsonString, EscapesLateControlCharacters) {
  EXPECT_EQ(Json("\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0"), "\"\\u0080\\u009b\\u009f\xC2\xA0\"");
}

TEST(JsonString, ReadsOtherBytesAsLatin1) {
  EXPECT_EQ(Json("\xFF"), "\"\xC3\xBF\"");
  EXPECT_EQ(Json("\xA0"), "\"\xC2\xA0\"");
  EXPECT_EQ(Json("\x9B"), R"("\u009b")");
  // The whole text: its good sequence, too, counts byte by byte.
  EXPECT_EQ(Json("\xC3\xB6\xFF"), "\"\xC3\x83\xC2\xB6\xC3\xBF\"");
}

TEST(Encoding, IsUtf8OnlyWhereWellFormed) {
  constexpr std::string_view kGood[] = {
      "",
      "plain text of more than eight bytes",
      "\x7F",
      "\xC2\x80",
      "\xDF\xBF",
      "\xE0\xA0\x80",
      "\xE1\x80\x80",
      "\xEC\xBF\xBF",
      "\xED\x9F\xBF",
      "\xEE\x80\x80",
      "\xEF\xBF\xBF",
      "\xF0\x90\x80\x80",
      "\xF1\x80\x80\x80",
      "\xF3\xBF\xBF\xBF",
      "\xF4\x8F\xBF\xBF",
      "eight by\xC3\xB6",
  };
  for (const std::string_view text : kGood) EXPECT_EQ(EncodingOf(text), Encoding::kUtf8) << text;
  constexpr std::string_view kBad[] = {
      "\x80",              // a byte that follows, alone
      "\xC0\xAF",          // longer than needed
      "\xC1\xBF",          //
      "\xE0\x9F\xBF",      //
      "\xF0\x8F\xBF\xBF",  //
      "\xED\xA0\x80",      // a surrogate
      "\xF4\x90\x80\x80",  // beyond U+10FFFF
      "\xF5\x80\x80\x80",  //
      "\xC3",              // cut off
      "\xE2\x82",          //
      "\xF0\x9F\x98",      //
      "\xE2\x82\x28",      // not followed
      "eight by\xFF",
  };
  for (const std::string_view text : kBad) EXPECT_EQ(EncodingOf(text), Encoding::kLatin1) << text;
}

}  // namespace
}  // namespace zfc_json
