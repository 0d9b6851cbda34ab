// What can be wrong in any file of YAML, and the limits of one.
#include "yaml/tree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ostream>
#include <string>
#include <string_view>

#include "unit/simulator/marked_text.h"

namespace {

using lab::Limits;
using lab::Mistakes;
using lab::YamlNode;
using lab::YamlTree;
using namespace std::string_literals;

std::string ReportOf(const std::string& text, const Limits& limits = lab::kLimits) {
  YamlTree tree;
  Mistakes mistakes;
  const bool read = tree.Read(text, limits, mistakes);
  EXPECT_TRUE(read || !mistakes.Empty());
  return mistakes.Report("a.yaml");
}

struct Broken {
  const char* name;
  std::string text;  // "^" ahead of the mistake
  const char* mistake;
};

std::ostream& operator<<(std::ostream& out, const Broken& broken) {
  return out << broken.name;
}

constexpr const char* kTab = "a tab can't indent; use blanks";
constexpr const char* kIndentation = "the indentation does not fit the lines above";
constexpr const char* kColon =
    "a ':' can't be here; the indentation does not fit the lines above, or a text needs quotes";
constexpr const char* kQuotes = "the quotes that begin here have no end";
constexpr const char* kAlias = "expected a name after '*'; a text that begins with '*' needs quotes";
constexpr const char* kAnchor = "expected a name after '&'; a text that begins with '&' needs quotes";
constexpr const char* kTag = "a tag can't be read; a text that begins with '!' needs quotes";

const Broken kBroken[] = {
    {"TabAheadOfAnItem", "a:\n^\t- b\n", kTab},
    {"TabAheadOfAKey", "a:\n  - b: 1\n^\tc: 2\n", kTab},
    {"TabAfterBlanks", "a:\n  - b:\n  ^\t  - c: 2\n", kTab},
    {"OpenBracket", "a:\n  - [b\n^",
     "expected ',' or the end of the brackets that begin at line 2, column 5"},
    {"OpenBrace", "a: {b: 1\nc^: 2\n",
     "expected ',' or the end of the brackets that begin at line 1, column 4"},
    {"ClosedBracket", "a: ^]\n", "this bracket closes none that is open"},
    {"OtherBracket", "a: [1, 2^}\n", "this bracket closes none that is open"},
    {"LessIndented", "a:\n  - b: 1\n   ^c: 2\n", kIndentation},
    {"MoreIndented", "a:\n  - b: 1\n      c^: 2\n", kColon},
    {"ItemLessIndented", "a:\n    - b\n  ^- c\n", kIndentation},
    {"ColonInAText", "a: b^: c\n", kColon},
    {"UnknownAlias", "a: &b 1\nc: ^*d\n", "alias '*d': expected an anchor '&d' ahead of it"},
    {"AliasOfItself", "a: &b [1, ^*b]\n", "an alias can't be inside what it names"},
    {"AliasWithoutName", "a: *^ b\n", kAlias},
    {"AnchorWithoutName", "a: &^ b\n", kAnchor},
    {"OpenDoubleQuotes", "a: ^\"b\nc: 2\n", kQuotes},
    {"OpenSingleQuotes", "a: ^'b\nc: 2\n", kQuotes},
    {"QuotesClosedByAnEscape", "a: ^\"b\\\"\n", kQuotes},
    {"UnknownEscape", "a: \"b\\q^\"\n", "an unknown escape after '\\' in double quotes"},
    {"Percent", "a: ^%b\n", "a text can't begin with this character; put it in quotes"},
    {"At", "a: ^@b\n", "a text can't begin with this character; put it in quotes"},
    {"Tag", "a: !<b^\n", kTag},
    {"BlockHead", "a: |^b\n c\n", "expected the end of the line after '|' or '>'"},
    {"Directive", "^%YAML 9.1\n---\na: 1\n", "expected '%YAML 1.2'"},
    {"SecondDocument", "a: 1\n^---\nb: 2\n", "a second document begins here; a file holds one"},
    {"KeyTwice", "a: 1\nb: 2\n^a: 3\n", "a: is here twice"},
    {"KeyTwiceInBraces", "a: {b: 1, ^b: 2}\n", "b: is here twice"},
    {"ListAsKey", "a: 1\n^[b]: 2\n", "expected a word as key"},
    {"NothingAsKey", "a: 1\n^: 2\n", "expected a word as key"},
    {"NoUtf8", "a: 1\nb: x^\xff\n", "expected UTF-8, got bytes that are none"},
    {"HalfACharacter", "a: ^\xe2\x82", "expected UTF-8, got bytes that are none"},
    {"OverlongCharacter", "a: ^\xc0\xaf\n", "expected UTF-8, got bytes that are none"},
    {"Surrogate", "a: ^\xed\xa0\x80\n", "expected UTF-8, got bytes that are none"},
    {"NulByte", "a: b^\0c\n"s, "expected text, got a NUL byte"},
    {"Utf16", "^\xff\xfe\x61\0"s, "expected UTF-8, got UTF-16 or UTF-32"},
};

class BrokenYaml : public testing::TestWithParam<Broken> {};

TEST_P(BrokenYaml, IsReportedInOurOwnWordsAtItsPlace) {
  const MarkedText marked = WithoutMark(GetParam().text);
  EXPECT_EQ(ReportOf(marked.text), "a.yaml" + marked.place + ": " + GetParam().mistake);
}

INSTANTIATE_TEST_SUITE_P(YamlTree, BrokenYaml, testing::ValuesIn(kBroken),
                         [](const auto& test) { return test.param.name; });

TEST(YamlTrees, EveryTabIsReported) {
  EXPECT_EQ(ReportOf("a:\n\t- b: 1\n\t  c: 2\nd:\n  - e\n"),
            "a.yaml:2:1: a tab can't indent; use blanks\na.yaml:3:1: a tab can't indent; use blanks");
}

TEST(YamlTrees, TabsElsewhereAreGood) {
  EXPECT_EQ(ReportOf("a:\t1  # a\tremark\n\t\nb: \"x\ty\"\n\t# a remark\n"), "");
}

TEST(YamlTrees, DuplicateKeysDoNotEndTheReading) {
  YamlTree tree;
  Mistakes mistakes;
  EXPECT_TRUE(tree.Read("a: 1\na: 2\nb: 3\nb: 4\n", lab::kLimits, mistakes));
  EXPECT_EQ(mistakes.Report("x"), "x:2:1: a: is here twice\nx:4:1: b: is here twice");
  ASSERT_EQ(tree.Root().node->pairs.size(), 2u);
  EXPECT_EQ(tree.Root().node->pairs[0].value.node->text, "1");
}

TEST(YamlTrees, ValuesHaveTheirPlaces) {
  YamlTree tree;
  Mistakes mistakes;
  ASSERT_TRUE(tree.Read("a: &x [1,\n     2]\nb:\nc: *x\n", lab::kLimits, mistakes));
  const YamlNode& root = *tree.Root().node;
  ASSERT_EQ(root.pairs.size(), 3u);
  const lab::YamlPair& list = root.pairs[0];
  EXPECT_EQ(list.key_place, (lab::Place{1, 1}));
  ASSERT_EQ(list.value.node->items.size(), 2u);
  EXPECT_EQ(list.value.node->items[1].place, (lab::Place{2, 6}));
  EXPECT_EQ(list.value.node->values, 3u);
  EXPECT_EQ(root.pairs[1].value.node->kind, YamlNode::Kind::kNothing);
  EXPECT_EQ(root.pairs[1].value.place, (lab::Place{3, 1}));  // that of the key
  EXPECT_EQ(root.pairs[2].value.node, list.value.node);
  EXPECT_EQ(root.pairs[2].value.place, (lab::Place{4, 4}));
  EXPECT_EQ(root.values, 8u);
}

TEST(YamlTrees, ByteOrderMarkOfUtf8IsSkipped) {
  EXPECT_EQ(ReportOf("\xef\xbb\xbf"
                     "a: 1\n"),
            "");
}

// Limits.
std::string Nested(std::size_t levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

TEST(YamlLimits, NestingHasALimit) {
  EXPECT_EQ(ReportOf(Nested(64)), "");
  EXPECT_EQ(ReportOf(Nested(65)), "a.yaml:1:65: nested deeper than 64 levels");
  EXPECT_TRUE(ReportOf(std::string(60000, '[')).ends_with(": nested deeper than 64 levels"));
}

TEST(YamlLimits, OpenBracketsOfALineHaveALimit) {
  Limits limits;
  limits.open_brackets = 2;
  EXPECT_EQ(ReportOf("- [{}]\n- [{a: [1]}, []]\n", limits),
            "a.yaml:2:8: more than 2 brackets are open in one line");
  EXPECT_EQ(ReportOf("- [\n{a:\n[1]}, [], [\n{}]]\n- ']]}[{'\n# [[\n", limits), "");
  EXPECT_EQ(ReportOf("- 'a text [[{'\n", limits), "a.yaml:1:13: more than 2 brackets are open in one line");
  EXPECT_EQ(ReportOf("a: [[\n" + std::string(5000000, '{')),
            "a.yaml:2:65537: more than 65536 brackets are open in one line");
}

TEST(YamlLimits, AliasesCountAsNesting) {
  EXPECT_EQ(ReportOf("- &a " + Nested(40) + "\n- " + std::string(20, '[') + "*a" + std::string(20, ']')), "");
  EXPECT_EQ(ReportOf("- &a " + Nested(40) + "\n- " + std::string(30, '[') + "*a" + std::string(30, ']')),
            "a.yaml:2:33: nested deeper than 64 levels");
}

TEST(YamlLimits, ValuesHaveALimit) {
  Limits limits;
  limits.values = 5;
  EXPECT_EQ(ReportOf("[1, 2, 3, 4]", limits), "");
  EXPECT_EQ(ReportOf("[1, 2, 3, 4, 5]", limits), "a.yaml: more than 5 values after its aliases are resolved");
  EXPECT_EQ(ReportOf("[&a [1], *a]", limits), "");
  EXPECT_EQ(ReportOf("[&a [1], *a, 2]", limits), "a.yaml: more than 5 values after its aliases are resolved");
}

// Nine aliases of nine aliases, and so on: a billion values in a short file.
TEST(YamlLimits, FileOfNestedAliasesEndsAtOnce) {
  std::string text = "a0: &a0 [1, 1, 1, 1, 1, 1, 1, 1, 1]\n";
  for (int level = 1; level < 12; ++level) {
    const std::string below = "*a" + std::to_string(level - 1);
    const std::string name = "a" + std::to_string(level);
    text += name + ": &" + name + " [" + below;
    for (int i = 1; i < 9; ++i) text += ", " + below;
    text += "]\n";
  }
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(ReportOf(text), "a.yaml: more than 4000000 values after its aliases are resolved");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST(YamlLimits, SizeHasALimit) {
  Limits limits;
  limits.file_bytes = 8;
  EXPECT_EQ(ReportOf("a: 1234\n", limits), "");
  EXPECT_EQ(ReportOf("a: 12345\n", limits), "a.yaml: larger than 8 bytes");
}

}  // namespace
