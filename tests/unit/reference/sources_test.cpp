#include "reference/check/sources.h"

#include <gtest/gtest.h>

namespace reference {
namespace {

using Texts = std::set<std::string>;

TEST(Sources, FindMessagesOverSeveralLiterals) {
  EXPECT_EQ(TextsOf("f(\"Failed, one\"); g(\"Failed, \"\n  \"two\");").messages,
            (Texts{"Failed, one", "Failed, two"}));
}

TEST(Sources, SkipCommentsAndCharacters) {
  EXPECT_EQ(TextsOf("// \"Failed, a\"\n/* \"Failed, b\" */ '\"' \"Failed, c\"").messages,
            (Texts{"Failed, c"}));
  EXPECT_EQ(TextsOf("\"a \\\" Failed\" \"Failed\"").messages, Texts());
}

TEST(Sources, FindStatusesOfTables) {
  const SourceTexts texts = TextsOf(
      "constexpr StatusMessage kRows[] = {\n  kLinkDown,\n  {kReadFailed, \"Failed, x\"},\n};\nkOther");
  EXPECT_EQ(texts.status_names, (Texts{"kLinkDown", "kReadFailed"}));
}

TEST(Sources, FindOptions) {
  const std::set<std::pair<std::string, std::string>> expected = {{"--long", "-l"}};
  EXPECT_EQ(TextsOf("{\"--long\", \"-l\"}, {\"-----\", \"-x\"}, \"--alone\"").options, expected);
}

TEST(Sources, ReadNumbersOfEnumerators) {
  const std::map<std::string, unsigned> expected = {{"kA", 1}, {"kB", 20}};
  EXPECT_EQ(EnumeratorsOf("enum E { kA = 1, // kC = 3,\n kB = 20 };  kD = kA,"), expected);
}

TEST(Sources, NameStatuses) {
  EXPECT_EQ(IdOf("kFileNotFound"), "file-not-found");
  EXPECT_EQ(IdOf("kQuit"), "quit");
}

TEST(Sources, EndInTheMiddleOfAnything) {
  for (const char* const source : {"\"Failed, ", "'", "/*", "//", "\"\\", "StatusMessage k[", "\"--a\","}) {
    const SourceTexts texts = TextsOf(source);
    EXPECT_EQ(texts.messages.size(), source[1] == 'F' ? 1U : 0U) << source;
    EXPECT_EQ(texts.status_names.size() + texts.options.size(), 0U) << source;
  }
}

}  // namespace
}  // namespace reference
