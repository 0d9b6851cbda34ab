#include "yaml/state_node.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using lab::StateNode;
using lab::YamlOf;

TEST(StateNode, FlagsAndNumbersAreTheirWords) {
  StateNode node;
  node["flag"] = true;
  node["other-flag"] = false;
  node["number"] = std::uint32_t{4294967295};
  node["large"] = std::uint64_t{18446744073709551615u};
  EXPECT_EQ(YamlOf(node), "flag: true\nother-flag: false\nnumber: 4294967295\nlarge: 18446744073709551615");
}

TEST(StateNode, TextsHaveQuotesWhereTheyNeedThem) {
  StateNode node;
  node["plain"] = "two words";
  node["empty"] = "";
  node["colon: blank"] = "# no comment";
  node["null"] = "~";
  EXPECT_EQ(YamlOf(node),
            "plain: two words\nempty: \"\"\n\"colon: blank\": \"# no comment\"\n\"null\": \"~\"");
}

TEST(StateNode, ListsAndMapsAreIndentedAndEmptyOnesShown) {
  StateNode node;
  node["list"].Add("a");
  StateNode map;
  map["x"] = "1";
  map["y"] = StateNode();
  node["list"].Add(map);
  node["no-list"] = StateNode(StateNode::Kind::kList);
  node["no-map"] = StateNode(StateNode::Kind::kMap);
  EXPECT_EQ(YamlOf(node), "list:\n  - a\n  - x: 1\n    y: ~\nno-list:\n  []\nno-map:\n  {}");
}

TEST(StateNode, AValueIsReplacedInItsPlace) {
  StateNode node;
  node["first"] = "1";
  node["second"] = "2";
  node["first"] = "3";
  EXPECT_EQ(YamlOf(node), "first: 3\nsecond: 2");
}

TEST(StateNode, AnotherKindTakesNothingAlong) {
  StateNode node("text");
  node["key"] = "value";
  EXPECT_EQ(YamlOf(node), "key: value");
  node.Add("item");
  EXPECT_EQ(YamlOf(node), "- item");
}

TEST(StateNode, FindsTheKeysOfMapsAlone) {
  StateNode node;
  node["key"] = "value";
  node.AddNew("list", {});
  node["list"].Add("key");
  ASSERT_NE(node.Find("key"), nullptr);
  EXPECT_EQ(node.Find("key")->Text(), "value");
  EXPECT_EQ(node.Find("value"), nullptr);
  EXPECT_EQ(node.Find("list")->Find("key"), nullptr);
}

TEST(StateNode, IsTheSameInTheSameOrderAlone) {
  StateNode one;
  StateNode other;
  one["a"] = "1";
  one["b"] = "2";
  other["b"] = "2";
  other["a"] = "1";
  EXPECT_NE(one, other);
  EXPECT_NE(StateNode(), StateNode(StateNode::Kind::kMap));
  EXPECT_NE(StateNode(), StateNode(""));
  other = one;
  EXPECT_EQ(one, other);
}

}  // namespace
