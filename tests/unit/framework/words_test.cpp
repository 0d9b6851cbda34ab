#include "framework/words.h"

#include <gtest/gtest.h>

namespace {

TEST(ToLowerAscii, LowersTheLettersAToZAlone) {
  for (int code = 0; code < 256; ++code) {
    const int expected = code >= 0x41 && code <= 0x5A ? code + 0x20 : code;
    EXPECT_EQ(static_cast<unsigned char>(ToLowerAscii(static_cast<char>(code))), expected);
  }
}

TEST(CompareNoCase, FindsWordsEqualInAnyCase) {
  EXPECT_EQ(CompareNoCase("Adapter", "aDAPTER"), 0);
  EXPECT_EQ(CompareNoCase("-T", "-t"), 0);
  EXPECT_EQ(CompareNoCase("ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"), 0);
  EXPECT_EQ(CompareNoCase("", ""), 0);
}

TEST(CompareNoCase, OrdersAsStrcmpDoes) {
  EXPECT_LT(CompareNoCase("get", "SET"), 0);
  EXPECT_GT(CompareNoCase("set", "GET"), 0);
  EXPECT_LT(CompareNoCase("get", "getcli"), 0);
  EXPECT_GT(CompareNoCase("getcli", "get"), 0);
  EXPECT_LT(CompareNoCase("", "a"), 0);
  EXPECT_GT(CompareNoCase("a", ""), 0);
}

TEST(CompareNoCase, ComparesLettersAsLowerCase) {
  // The underscore comes between the upper and the lower case letters.
  EXPECT_LT(CompareNoCase("_", "A"), 0);
  EXPECT_GT(CompareNoCase("A", "_"), 0);
}

TEST(CompareNoCase, LeavesTheNeighboursOfTheLettersApart) {
  EXPECT_NE(CompareNoCase("@", "`"), 0);
  EXPECT_NE(CompareNoCase("[", "{"), 0);
}

TEST(CompareNoCase, LeavesBytesBeyondAsciiAsTheyAre) {
  EXPECT_NE(CompareNoCase("\xC4", "\xE4"), 0);          // A with diaeresis in Latin-1, both cases
  EXPECT_NE(CompareNoCase("\xC3\x84", "\xC3\xA4"), 0);  // the same in UTF-8
  EXPECT_EQ(CompareNoCase("a\xC3\x84", "A\xC3\x84"), 0);
  EXPECT_GT(CompareNoCase("\x80", "z"), 0);  // bytes count as unsigned
  EXPECT_LT(CompareNoCase("z", "\xFF"), 0);
}

TEST(EqualNoCase, IsTrueForTheSameWordAlone) {
  EXPECT_TRUE(EqualNoCase("ListCli", "LISTcli"));
  EXPECT_FALSE(EqualNoCase("list", "listcli"));
  EXPECT_FALSE(EqualNoCase("list", ""));
}

TEST(IsHelpWord, KnowsSevenWordsInAnyCase) {
  for (const char* word : {"help", "/h", "/help", "-h", "-help", "/?", "?"}) {
    EXPECT_TRUE(IsHelpWord(word)) << word;
  }
  for (const char* word : {"HELP", "/H", "/Help", "-H", "-hELP"}) EXPECT_TRUE(IsHelpWord(word)) << word;
}

TEST(IsHelpWord, KnowsNoOther) {
  for (const char* word : {"", "h", "--help", "-?", "??", "help ", " help", "helpme", "hel", "/", "-"}) {
    EXPECT_FALSE(IsHelpWord(word)) << word;
  }
}

TEST(WordAt, GivesAnEmptyTextPastTheLastWord) {
  const Words words = {"zero", "one"};
  EXPECT_EQ(WordAt(words, 0), "zero");
  EXPECT_EQ(WordAt(words, 1), "one");
  EXPECT_EQ(WordAt(words, 2), "");
  EXPECT_EQ(WordAt({}, 0), "");
}

TEST(FindWordPair, FindsAPairAnywhereInAnyCase) {
  int index = 7;
  EXPECT_TRUE(FindWordPair({"-t", "adapter", "list"}, "-t", "adapter", index));
  EXPECT_EQ(index, 0);
  EXPECT_TRUE(FindWordPair({"getcli", "x", "-S", "INFO"}, "-s", "info", index));
  EXPECT_EQ(index, 2);
}

TEST(FindWordPair, FindsTheFirstOfTwoPairs) {
  int index = 7;
  EXPECT_TRUE(FindWordPair({"x", "-t", "port", "-t", "port"}, "-t", "port", index));
  EXPECT_EQ(index, 1);
}

TEST(FindWordPair, GoesOnAfterAFirstWordWithoutItsSecond) {
  int index = 7;
  EXPECT_TRUE(FindWordPair({"-t", "-t", "adapter"}, "-t", "adapter", index));
  EXPECT_EQ(index, 1);
}

TEST(FindWordPair, DoesNotFindAFirstWordInTheLastPlace) {
  int index = 7;
  EXPECT_FALSE(FindWordPair({"adapter", "-t"}, "-t", "adapter", index));
  EXPECT_EQ(index, -1);
}

TEST(FindWordPair, DoesNotFindSeparatedWords) {
  int index = 7;
  EXPECT_FALSE(FindWordPair({"-t", "x", "adapter"}, "-t", "adapter", index));
  EXPECT_EQ(index, -1);
}

TEST(FindWordPair, FindsNothingAmongNoWords) {
  int index = 7;
  EXPECT_FALSE(FindWordPair({}, "-t", "adapter", index));
  EXPECT_EQ(index, -1);
  index = 7;
  EXPECT_FALSE(FindWordPair({}, "", "adapter", index));
  EXPECT_EQ(index, -1);
}

TEST(FindWordPair, WithoutAFirstWordFindsTheSecondAlone) {
  int index = 7;
  EXPECT_TRUE(FindWordPair({"a", "LIST", "list"}, "", "list", index));
  EXPECT_EQ(index, 1);
  EXPECT_FALSE(FindWordPair({"a", "lists"}, "", "list", index));
  EXPECT_EQ(index, -1);
}

TEST(FindOption, CopiesTheWordAfterTheFirstMatchOfEitherName) {
  const Words words = {"port", "-A", "1", "--long", "2", "-a", "3", "-b"};
  std::string value;
  EXPECT_TRUE(FindOption(words, "--other", "-a", value));
  EXPECT_EQ(value, "1");
  EXPECT_TRUE(FindOption(words, "--LONG", "", value));
  EXPECT_EQ(value, "2");
}

TEST(FindOption, FindsNothingWithoutAValue) {
  std::string value = "old";
  EXPECT_FALSE(FindOption({"port", "-b"}, "--none", "-b", value));
  EXPECT_FALSE(FindOption({"", "value"}, "", "", value));
  EXPECT_FALSE(FindOption({}, "--none", "-b", value));
  EXPECT_EQ(value, "old");
}

TEST(GetOptionValue, ErasesTheOptionAndLeavesItsValue) {
  Words words = {"a", "--speed", "16", "b"};
  std::string value;
  EXPECT_TRUE(GetOptionValue(words, "--speed", "-s", value));
  EXPECT_EQ(value, "16");
  EXPECT_EQ(words, (Words{"a", "16", "b"}));
}

TEST(GetOptionValue, MatchesEitherNameInAnyCase) {
  Words by_long_name = {"--SPEED", "8"};
  Words by_short_name = {"-S", "4"};
  std::string value;
  EXPECT_TRUE(GetOptionValue(by_long_name, "--speed", "-s", value));
  EXPECT_EQ(value, "8");
  EXPECT_TRUE(GetOptionValue(by_short_name, "--speed", "-s", value));
  EXPECT_EQ(value, "4");
}

TEST(GetOptionValue, TakesTheFirstMatchOfEitherName) {
  Words words = {"-s", "4", "--speed", "8"};
  std::string value;
  EXPECT_TRUE(GetOptionValue(words, "--speed", "-s", value));
  EXPECT_EQ(value, "4");
  EXPECT_EQ(words, (Words{"4", "--speed", "8"}));
}

TEST(GetOptionValue, OptionAsTheLastWordReturnsFalseWithTheOptionErased) {
  Words words = {"a", "--speed"};
  std::string value;
  EXPECT_FALSE(GetOptionValue(words, "--speed", "", value));
  EXPECT_EQ(words, (Words{"a"}));
}

TEST(GetOptionValue, WithoutAMatchLeavesTheWordsAlone) {
  Words words = {"a", "--speeds", "16"};
  std::string value;
  EXPECT_FALSE(GetOptionValue(words, "--speed", "-s", value));
  EXPECT_EQ(words, (Words{"a", "--speeds", "16"}));
}

TEST(GetOptionValue, OfAnOptionGivenTwiceOnlyTheFirstIsSeenUnlessTheCopyIsReadAgain) {
  Words words = {"--lun", "1", "--lun", "2"};
  std::string value;
  EXPECT_TRUE(GetOptionValue(words, "--lun", "", value));
  EXPECT_EQ(value, "1");
  EXPECT_TRUE(GetOptionValue(words, "--lun", "", value));
  EXPECT_EQ(value, "2");
  EXPECT_FALSE(GetOptionValue(words, "--lun", "", value));
  EXPECT_EQ(words, (Words{"1", "2"}));
}

TEST(GetOptionValue, TakesAnOptionWordAsAValueToo) {
  Words words = {"--file", "--lun", "3"};
  std::string value;
  EXPECT_TRUE(GetOptionValue(words, "--file", "", value));
  EXPECT_EQ(value, "--lun");
  EXPECT_EQ(words, (Words{"--lun", "3"}));
}

TEST(GetOptionValue, AnEmptyNameMatchesNothing) {
  Words words = {"", "value"};
  std::string value;
  EXPECT_FALSE(GetOptionValue(words, "--speed", "", value));
  EXPECT_FALSE(GetOptionValue(words, "", "-s", value));
  EXPECT_FALSE(GetOptionValue(words, "", "", value));
  EXPECT_EQ(words, (Words{"", "value"}));
}

TEST(GetOptionValue, TakesAnEmptyWordAsAValue) {
  Words words = {"--file", ""};
  std::string value = "before";
  EXPECT_TRUE(GetOptionValue(words, "--file", "", value));
  EXPECT_EQ(value, "");
}

}  // namespace
