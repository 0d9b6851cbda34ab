#include "tools/lab/map/text_width.h"

#include <gtest/gtest.h>

namespace {

using map::Face;

TEST(Width, GrowsWithTheText) {
  EXPECT_EQ(map::TextWidth("", Face::kPlain, 10), 0);
  EXPECT_EQ(map::TextWidth("W", Face::kPlain, 100), 99);
  EXPECT_EQ(map::TextWidth("ii", Face::kPlain, 100), 56);
  EXPECT_EQ(map::TextWidth("ab", Face::kMono, 100), 122);
  EXPECT_GT(map::TextWidth("ab", Face::kBold, 100), map::TextWidth("ab", Face::kPlain, 100));
  EXPECT_EQ(map::TextWidth("\xe6\x97\xa5", Face::kPlain, 100), 104);
}

TEST(Fitted, LeavesAFittingTextAlone) {
  EXPECT_EQ(map::Fitted("VA-2000", Face::kMono, 10, 43), "VA-2000");
}

TEST(Fitted, CutsVisibly) {
  EXPECT_EQ(map::Fitted("VA-2000", Face::kMono, 10, 42), "VA-20\xE2\x80\xA6");
  EXPECT_EQ(map::Fitted("a b c d e f", Face::kMono, 10, 36), "a b\xE2\x80\xA6");
  EXPECT_EQ(map::Fitted("WWWW", Face::kPlain, 10, 5), "\xE2\x80\xA6");
}

TEST(Fitted, CutsBetweenCharacters) {
  const std::string text = "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e";
  EXPECT_EQ(map::Fitted(text, Face::kPlain, 10, 22), "\xe6\x97\xa5\xE2\x80\xA6");
}

using Lines = std::vector<std::string>;

TEST(Wrapped, BreaksAtBlanks) {
  EXPECT_EQ(map::Wrapped("one two three", Face::kMono, 10, 50, 3), (Lines{"one two", "three"}));
  EXPECT_EQ(map::Wrapped("one", Face::kMono, 10, 50, 3), (Lines{"one"}));
}

TEST(Wrapped, CutsTheLastLine) {
  EXPECT_EQ(map::Wrapped("one two three four", Face::kMono, 10, 50, 2),
            (Lines{"one two", "three\xE2\x80\xA6"}));
}

TEST(Wrapped, CutsAWordThatIsTooLong) {
  EXPECT_EQ(map::Wrapped("abcdefghijkl mno", Face::kMono, 10, 50, 3), (Lines{"abcdef\xE2\x80\xA6", "mno"}));
}

}  // namespace
