#include "base/nearest_word.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using lab::NearestWord;

constexpr std::string_view kFamilies[] = {"aster", "birch", "cedar", "elm", "dahlia"};

struct Slip {
  const char* name;
  const char* word;
  const char* meant;  // empty: nothing is close
};

constexpr Slip kSlips[] = {
    {"Dropped", "dahla", "dahlia"},
    {"Added", "birrch", "birch"},
    {"Changed", "cadar", "cedar"},
    {"Swapped", "asetr", "aster"},
    {"Capitals", "ELM", "elm"},
    {"OneInAShortWord", "elk", "elm"},
    {"TwoInAShortWord", "oak", ""},
    {"TwoInSixLetters", "dalia5", "dahlia"},
    {"ThreeInSixLetters", "dalix5", ""},
    {"NothingAlike", "sequoia", ""},
    {"Empty", "", ""},
    {"TooShortToSay", "el", ""},
    {"VeryLong", "dahliadahliadahliadahliadahliadahliadahliadahliadahlia", ""},
};

class Slips : public testing::TestWithParam<Slip> {};

TEST_P(Slips, GiveTheWordThatWasMeant) {
  EXPECT_EQ(NearestWord(GetParam().word, kFamilies), GetParam().meant);
}

INSTANTIATE_TEST_SUITE_P(NearestWord, Slips, testing::ValuesIn(kSlips),
                         [](const auto& test) { return test.param.name; });

TEST(NearestWords, TheClosestOneIsTaken) {
  constexpr std::string_view kKeys[] = {"tx-power-limit", "rx-power", "tx-power"};
  EXPECT_EQ(NearestWord("tx-pover", kKeys), "tx-power");
}

TEST(NearestWords, LongestWordHas48Letters) {
  const std::string longest(48, 'a');
  const std::string_view known[] = {longest};
  EXPECT_EQ(NearestWord(std::string(47, 'a'), known), longest);
  EXPECT_EQ(NearestWord(longest + "a", known), "");
}

TEST(NearestWords, MessageEndsWithIt) {
  EXPECT_EQ(lab::DidYouMean("dahla", kFamilies), "; did you mean 'dahlia'?");
  EXPECT_EQ(lab::DidYouMean("oak", kFamilies), "");
}

}  // namespace
