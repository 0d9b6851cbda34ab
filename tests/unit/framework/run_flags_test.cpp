#include "framework/run_flags.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/unit_run_flags.h"

namespace {

struct Parsed {
  std::uint32_t flags;
  int first;
  bool operator==(const Parsed&) const = default;
};

// Parses an argument vector whose word 0 is the program name.
Parsed Parse(std::vector<std::string> words) {
  words.insert(words.begin(), "zfcesxcli");
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  int first = -1;
  const std::uint32_t flags = ParseProgramFlags(static_cast<int>(words.size()), argv.data(), first);
  return {flags, first};
}

void PrintTo(const Parsed& parsed, std::ostream* out) {
  *out << "flags " << parsed.flags << ", first " << parsed.first;
}

TEST(ParseProgramFlags, WithoutArgumentsStopsAtOne) {
  EXPECT_EQ(Parse({}), (Parsed{0, 1}));
}

TEST(ParseProgramFlags, WithoutAProgramNameStopsAtOne) {
  int first = -1;
  char* no_words[] = {nullptr};
  EXPECT_EQ(ParseProgramFlags(0, no_words, first), 0u);
  EXPECT_EQ(first, 1);
}

TEST(ParseProgramFlags, SetsABitForEachLeadingFlag) {
  EXPECT_EQ(Parse({"-debug", "-t", "adapter", "list"}), (Parsed{1, 2}));
  EXPECT_EQ(Parse({"-eng", "-t", "adapter", "list"}), (Parsed{8, 2}));
  EXPECT_EQ(Parse({"-debug", "-eng", "-t", "adapter", "list"}), (Parsed{1 | 8, 3}));
  EXPECT_EQ(Parse({"-eng", "-debug"}), (Parsed{1 | 8, 3}));
}

TEST(ParseProgramFlags, RecognisesBothFlagsInAnyCase) {
  EXPECT_EQ(Parse({"-DEBUG", "-Eng", "-t", "adapter", "list"}), (Parsed{1 | 8, 3}));
}

TEST(ParseProgramFlags, TakesARepeatedFlag) {
  EXPECT_EQ(Parse({"-eng", "-ENG", "-eng", "x"}), (Parsed{8, 4}));
}

TEST(ParseProgramFlags, LeavesAFlagAfterAnotherWordAlone) {
  EXPECT_EQ(Parse({"-t", "adapter", "-debug", "list"}), (Parsed{0, 1}));
  EXPECT_EQ(Parse({"-debug", "list", "-eng"}), (Parsed{1, 2}));
}

TEST(ParseProgramFlags, TakesNoOtherSpelling) {
  for (const char* word : {"debug", "--debug", "-debu", "-debugs", "-engineering", "-en", "", "-"}) {
    EXPECT_EQ(Parse({word, "-eng"}), (Parsed{0, 1})) << word;
  }
}

TEST(RunFlags, HaveTheirBits) {
  EXPECT_EQ(RUN_FLAG_DEBUG, 1u);
  EXPECT_EQ(RUN_FLAG_QUIT, 2u);
  EXPECT_EQ(RUN_FLAG_BATCH, 4u);
  EXPECT_EQ(RUN_FLAG_ENGINEERING, 8u);
  EXPECT_EQ(RUN_FLAG_BREAK, 16u);
}

TEST(RunFlagIsSet, LooksAtItsOwnBitAlone) {
  const ScopedRunFlags flags(2 | 16);
  EXPECT_FALSE(RunFlagIsSet(RUN_FLAG_DEBUG));
  EXPECT_TRUE(RunFlagIsSet(RUN_FLAG_QUIT));
  EXPECT_FALSE(RunFlagIsSet(RUN_FLAG_BATCH));
  EXPECT_FALSE(RunFlagIsSet(RUN_FLAG_ENGINEERING));
  EXPECT_TRUE(RunFlagIsSet(RUN_FLAG_BREAK));
}

}  // namespace
