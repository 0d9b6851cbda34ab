#include "framework/command_line.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace {

using Tokens = std::unique_ptr<char*, void (*)(void*)>;

// The words that the text splits into; empty when it cannot be split.
std::optional<Words> Split(const std::string& text) {
  std::size_t count = 12345;
  const Tokens tokens(SplitCommandLine(text.c_str(), count), &std::free);
  if (tokens == nullptr) return std::nullopt;
  EXPECT_EQ(tokens.get()[count], nullptr) << "the array is not closed";
  return Words(tokens.get(), tokens.get() + count);
}

std::string Repeated(const std::string& text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

TEST(SplitCommandLine, SplitsAtSeparators) {
  EXPECT_EQ(Split("-t adapter list"), (Words{"-t", "adapter", "list"}));
  EXPECT_EQ(Split("a\tb\rc\nd"), (Words{"a", "b", "c", "d"}));
  EXPECT_EQ(Split("word"), (Words{"word"}));
}

TEST(SplitCommandLine, TakesSeparatorsInARowAsOne) {
  EXPECT_EQ(Split("  a \t\r\n b  "), (Words{"a", "b"}));
}

TEST(SplitCommandLine, GivesNoWordsForAnEmptyText) {
  EXPECT_EQ(Split(""), Words{});
}

TEST(SplitCommandLine, GivesNoWordsForSeparatorsAlone) {
  EXPECT_EQ(Split(" "), Words{});
  EXPECT_EQ(Split(" \t\r\n \r\n"), Words{});
}

TEST(SplitCommandLine, TakesNoOtherCharacterAsSeparator) {
  EXPECT_EQ(Split("a\vb\fc;d,e'f g"), (Words{"a\vb\fc;d,e'f", "g"}));
}

TEST(SplitCommandLine, KeepsBytesBeyondAscii) {
  EXPECT_EQ(Split("\xC3\xA4 \xFF\xA0"), (Words{"\xC3\xA4", "\xFF\xA0"}));
}

TEST(SplitCommandLine, KeepsSeparatorsInQuotesAndDropsTheQuotes) {
  EXPECT_EQ(Split("log \"my file\""), (Words{"log", "my file"}));
  EXPECT_EQ(Split("\" a\t\r\nb \""), (Words{" a\t\r\nb "}));
}

TEST(SplitCommandLine, TakesAQuotedEmptyTextAsAWord) {
  EXPECT_EQ(Split("\"\""), (Words{""}));
  EXPECT_EQ(Split("a \"\" b"), (Words{"a", "", "b"}));
  EXPECT_EQ(Split("\"\" \"\" \"\""), (Words{"", "", ""}));
}

TEST(SplitCommandLine, ContinuesAWordAtAQuoteInItsMiddle) {
  EXPECT_EQ(Split("ab\"cd ef\"gh"), (Words{"abcd efgh"}));
  EXPECT_EQ(Split("a\"\"b"), (Words{"ab"}));
  EXPECT_EQ(Split("a\"\""), (Words{"a"}));
  EXPECT_EQ(Split("\"\"a"), (Words{"a"}));
  EXPECT_EQ(Split("\"a\"\"b\""), (Words{"ab"}));
  EXPECT_EQ(Split("\"\"\"\""), (Words{""}));
}

TEST(SplitCommandLine, EndsAQuotedWordAtASeparatorAfterTheQuote) {
  EXPECT_EQ(Split("\"a b\" c"), (Words{"a b", "c"}));
  EXPECT_EQ(Split("\"a\" \"b\""), (Words{"a", "b"}));
}

TEST(SplitCommandLine, KnowsNoEscapeCharacter) {
  EXPECT_EQ(Split("a\\\"b c\""), (Words{"a\\b c"}));
  EXPECT_EQ(Split("a\\ b"), (Words{"a\\", "b"}));
  EXPECT_EQ(Split("\"a\\\""), (Words{"a\\"}));
}

TEST(SplitCommandLine, FailsWhenTheTextEndsInQuotes) {
  EXPECT_EQ(Split("\""), std::nullopt);
  EXPECT_EQ(Split("a \"b c"), std::nullopt);
  EXPECT_EQ(Split("a\""), std::nullopt);
  EXPECT_EQ(Split("\"a\" \""), std::nullopt);
  EXPECT_EQ(Split("\"\"\""), std::nullopt);
  EXPECT_EQ(Split("\"a\\\\\\"), std::nullopt);
}

// The pointer array has room for half as many words as the text has characters: the texts with most words.
TEST(SplitCommandLine, HasRoomForTheMostWordsATextCanHold) {
  for (std::size_t words = 1; words <= 40; ++words) {
    std::string letters = Repeated("a ", words);
    EXPECT_EQ(Split(letters), Words(words, "a"));
    letters.pop_back();
    EXPECT_EQ(Split(letters), Words(words, "a"));
    EXPECT_EQ(Split(" " + letters), Words(words, "a"));

    std::string quotes = Repeated("\"\" ", words);
    EXPECT_EQ(Split(quotes), Words(words, ""));
    quotes.pop_back();
    EXPECT_EQ(Split(quotes), Words(words, ""));
  }
}

TEST(SplitCommandLine, TakesAWordOfAMegabyte) {
  const std::string word(1 << 20, 'x');
  EXPECT_EQ(Split(word), (Words{word}));
  EXPECT_EQ(Split("\"" + word + " " + word + "\" y"), (Words{word + " " + word, "y"}));
  EXPECT_EQ(Split("\"" + word), std::nullopt);
}

TEST(SplitCommandLine, TakesHalfAMillionWords) {
  EXPECT_EQ(Split(Repeated("a ", 1 << 19)), Words(1 << 19, "a"));
  EXPECT_EQ(Split(Repeated("\"\" ", 1 << 18)), Words(1 << 18, ""));
}

TEST(SplitCommandLine, TakesAMegabyteOfSeparators) {
  EXPECT_EQ(Split(std::string(1 << 20, ' ') + "a"), (Words{"a"}));
}

TEST(ParseInputLine, AppendsToTheWordsThereAre) {
  Words words = {"first"};
  EXPECT_TRUE(ParseInputLine("second \"third word\"\n", words));
  EXPECT_EQ(words, (Words{"first", "second", "third word"}));
}

TEST(ParseInputLine, AppendsNothingForAnEmptyLine) {
  Words words;
  EXPECT_TRUE(ParseInputLine("", words));
  EXPECT_TRUE(ParseInputLine(" \r\n", words));
  EXPECT_EQ(words, Words{});
}

TEST(ParseInputLine, FailsForALineThatEndsInQuotes) {
  Words words = {"first"};
  EXPECT_FALSE(ParseInputLine("second \"third", words));
  EXPECT_EQ(words, (Words{"first"}));
}

}  // namespace
