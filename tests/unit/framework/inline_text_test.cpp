#include "framework/inline_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>

namespace {

struct Row {
  InlineText<6> text;
  int number;
  InlineText<3> second = "abc";
};

constexpr Row kRows[] = {{"Online", 1}, {"", 2, ""}, {"NA", 3, "x"}};

static_assert(!std::is_constructible_v<InlineText<3>, const char*>, "only a literal has a length to check");
static_assert(std::is_constructible_v<InlineText<3>, const char (&)[4]>);

// Of a copy that is gone, a pointer to its text would be left.
static_assert(!std::is_convertible_v<InlineText<3>, const char*>);
static_assert(!std::is_convertible_v<InlineText<3>, std::string_view>);
static_assert(std::is_convertible_v<const InlineText<3>&, const char*>);

TEST(InlineText, HoldsTheTextOfItsRow) {
  EXPECT_STREQ(kRows[0].text, "Online");
  EXPECT_STREQ(kRows[0].second, "abc");
  EXPECT_STREQ(kRows[2].text.CString(), "NA");
  const std::string_view view = kRows[2].text;
  EXPECT_EQ(view, "NA");
  EXPECT_EQ(std::string("<").append(kRows[2].second) + ">", "<x>");
}

TEST(InlineText, IsInTheRowItself) {
  const auto* const row = reinterpret_cast<const char*>(&kRows[1]);
  EXPECT_GE(kRows[1].text.CString(), row);
  EXPECT_LT(kRows[1].text.CString(), row + sizeof(Row));
}

TEST(InlineText, IsEmptyWhereARowHasNone) {
  EXPECT_TRUE(kRows[1].text.Empty());
  EXPECT_TRUE(kRows[1].second.Empty());
  EXPECT_TRUE(InlineText<3>().Empty());
  EXPECT_FALSE(kRows[2].second.Empty());
}

TEST(InlineText, ComparesAsText) {
  const std::string same = "Online";
  EXPECT_TRUE(kRows[0].text == same);
  EXPECT_TRUE(kRows[0].text == same.c_str());
  EXPECT_TRUE(kRows[0].text == std::string_view("Online, or not").substr(0, 6));
  EXPECT_FALSE(kRows[0].text == "Onlin");
  EXPECT_FALSE(kRows[0].text == "online");
}

}  // namespace
