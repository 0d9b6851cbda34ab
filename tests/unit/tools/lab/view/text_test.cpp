#include "tools/lab/view/text.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;

struct CleanCase {
  const char* name;
  std::string_view text;
  std::string_view clean;  // "#" for U+FFFD
};

constexpr CleanCase kCleanCases[] = {
    {"plain", "VA-2000", "VA-2000"},
    {"blanks around it", "  VA 2000   ", "VA 2000"},
    {"blanks alone", "    ", ""},
    {"markup is text", "<a>&\"'", "<a>&\"'"},
    {"terminal escape", "\x1b[31mred",
     "#"
     "[31mred"},
    {"line end and tab", "a\r\n\tb",
     "a"
     "#"
     "#"
     "#"
     "b"},
    {"null", "a\0b"sv,
     "a"
     "#"
     "b"},
    {"delete", "a\x7f",
     "a"
     "#"},
    {"control of the second set",
     "a\xc2\x9b"
     "31m",
     "a"
     "#"
     "31m"},
    {"no-break space is a character",
     "a\xc2\xa0"
     "b",
     "a\xc2\xa0"
     "b"},
    {"right-to-left override",
     "a\xe2\x80\xae"
     "b",
     "a"
     "#"
     "b"},
    {"two bytes", "\xc3\xa9", "\xc3\xa9"},
    {"three bytes", "\xe6\x97\xa5", "\xe6\x97\xa5"},
    {"four bytes", "\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80"},
    {"lone continuation", "\x80", "#"},
    {"overlong slash", "\xc0\xaf",
     "#"
     "#"},
    {"overlong of three", "\xe0\x80\xaf",
     "#"
     "#"
     "#"},
    {"surrogate", "\xed\xa0\x80", "#"},
    {"past the last character", "\xf4\x90\x80\x80", "#"},
    {"no character of a plane's end", "\xef\xbf\xbe", "#"},
    {"cut short", "a\xe6\x97",
     "a"
     "#"
     "#"},
    {"latin 1", "caf\xe9",
     "caf"
     "#"},
    {"erased flash", "\xff\xff",
     "#"
     "#"},
};

std::string Marked(const std::string& text) {
  std::string marked = text;
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  for (std::size_t at; (at = marked.find(kReplacement)) != std::string::npos;) marked.replace(at, 3, "#");
  return marked;
}

TEST(Text, IsCleanWhateverADeviceHolds) {
  for (const CleanCase& row : kCleanCases)
    EXPECT_EQ(Marked(view::CleanText(row.text)), row.clean) << row.name;
}

TEST(Text, IsEscapedForXml) {
  EXPECT_EQ(view::XmlText("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c&#39;");
}

TEST(Text, IsQuotedForJson) {
  EXPECT_EQ(view::JsonText("a\"b\\c"), "\"a\\\"b\\\\c\"");
}

TEST(Text, CountsCharacters) {
  EXPECT_EQ(view::CharacterCount("a\xe6\x97\xa5"
                                 "b"),
            3u);
}

TEST(Text, GroupsDigits) {
  EXPECT_EQ(view::Grouped(0), "0");
  EXPECT_EQ(view::Grouped(999), "999");
  EXPECT_EQ(view::Grouped(1000), "1,000");
  EXPECT_EQ(view::Grouped(18446744073709551615u), "18,446,744,073,709,551,615");
}

TEST(Text, CountsThings) {
  EXPECT_EQ(view::Counted(0, "LUN"), "0 LUNs");
  EXPECT_EQ(view::Counted(1, "LUN"), "1 LUN");
  EXPECT_EQ(view::Counted(16384, "LUN"), "16,384 LUNs");
}

TEST(Text, WritesNumbers) {
  EXPECT_EQ(view::HexNumber(5, 2), "0x05");
  EXPECT_EQ(view::HexNumber(0xabc, 2), "0xabc");
  EXPECT_EQ(view::Decimal(36.46, 1), "36.5");
  EXPECT_EQ(view::Decimal(-40, 1), "-40.0");
  EXPECT_EQ(view::Decimal(-0.01, 1), "0.0");
}

TEST(Text, JoinsWhatIsThere) {
  const std::string parts[] = {"", "a", "", "b"};
  EXPECT_EQ(view::Joined(parts, ", "), "a, b");
}

}  // namespace
