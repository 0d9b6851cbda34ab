#include "port/vpd_map.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/unit_command_run.h"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

const std::string kEndTag = "\x78";

// The pairs of an image, in memory of exactly its size: a read past its end shows under a sanitizer.
Pairs Map(const std::string& image) {
  const std::vector<std::uint8_t> exact(image.begin(), image.end());
  TestRun test;
  const VpdMap map = MapVpdData(test.run, exact);
  return {map.begin(), map.end()};
}

char Low(std::size_t number) {
  return static_cast<char>(number & 0xff);
}

// An item that gives `length` as its own, whatever the value's length is.
std::string Item(const std::string& keyword, const std::string& value, std::size_t length) {
  return keyword + Low(length) + value;
}
std::string Item(const std::string& keyword, const std::string& value) {
  return Item(keyword, value, value.size());
}

// The identifier string, or a header with the tag of one.
std::string Resource(char tag, std::size_t length, const std::string& content) {
  return std::string{tag, Low(length), Low(length >> 8)} + content;
}
std::string String(const std::string& name) {
  return Resource('\x82', name.size(), name);
}

TEST(VpdMap, WalksTheIdentifierStringAndTheItemsOfBothResources) {
  const std::string fixed = Item("PN", "AB1") + Item("SN", "0042");
  const std::string changing = Item("V1", "7.2");
  const std::string image = String("Board") + Resource('\x90', fixed.size(), fixed) +
                            Resource('\x91', changing.size(), changing) + kEndTag;
  EXPECT_EQ(Map(image), (Pairs{{"PI", "Board"}, {"PN", "AB1"}, {"SN", "0042"}, {"V1", "7.2"}}));
}

TEST(VpdMap, OrdersByTheBytesOfTheKeyword) {
  const std::string image = Item("ab", "1") + Item("Zz", "2") + Item("\xff\xfe", "3") + Item("A0", "4") +
                            Item("V9", "5") + Item("AA", "6") + Item("V0", "7");
  const Pairs ordered = {{"A0", "4"}, {"AA", "6"}, {"V0", "7"},      {"V9", "5"},
                         {"Zz", "2"}, {"ab", "1"}, {"\xff\xfe", "3"}};
  EXPECT_EQ(Map(image), ordered);
}

TEST(VpdMap, KeywordThatComesAgainOverwrites) {
  EXPECT_EQ(Map(Item("PN", "old") + Item("V0", "a") + Item("PN", "new")),
            (Pairs{{"PN", "new"}, {"V0", "a"}}));
  EXPECT_EQ(Map(Item("PN", "old") + Item("PN", "")), (Pairs{{"PN", ""}}));
  EXPECT_EQ(Map(String("string") + Item("PI", "item")), (Pairs{{"PI", "item"}}));
}

TEST(VpdMap, StopsAtTheEndTag) {
  EXPECT_EQ(Map(Item("PN", "A") + kEndTag + Item("SN", "B")), (Pairs{{"PN", "A"}}));
  EXPECT_EQ(Map(Item("PN", "A") + Item("xN", "B")), (Pairs{{"PN", "A"}}));  // "x" is the end tag's byte
  EXPECT_EQ(Map(Item("PN", "xx") + Item("SN", "B")), (Pairs{{"PN", "xx"}, {"SN", "B"}}));
  EXPECT_EQ(Map(kEndTag), Pairs{});
  EXPECT_EQ(Map(""), Pairs{});
}

TEST(VpdMap, HeadersTakeThreeBytesWhateverTheirLengthSays) {
  for (const char tag : {'\x90', '\x91'}) {
    for (const std::size_t length : {0x0000u, 0x0001u, 0xffffu}) {
      EXPECT_EQ(Map(Resource(tag, length, Item("PN", "A"))), (Pairs{{"PN", "A"}}));
    }
    EXPECT_EQ(Map({tag}), Pairs{});
    EXPECT_EQ(Map({tag, '\x01'}), Pairs{});
  }
}

TEST(VpdMap, ChecksumAndReservedSpaceKeepTheirFirstByte) {
  EXPECT_EQ(Map(Item("RV", "\x5a\xff") + Item("RW", "\x07")), (Pairs{{"RV", "5a"}, {"RW", "07"}}));
  EXPECT_EQ(Map("RV"), (Pairs{{"RV", "00"}}));
  EXPECT_EQ(Map(Item("RW", "") + Item("AB", "1")), (Pairs{{"AB", "1"}, {"RW", "41"}}));  // even of no data
}

TEST(VpdMap, ValueEndsAtItsTerminator) {
  const std::string with_null("AB\0CD", 5);
  EXPECT_EQ(Map(Item("PN", with_null) + Item("SN", {'\0', 'A'})), (Pairs{{"PN", "AB"}, {"SN", ""}}));
  EXPECT_EQ(Map(String(with_null)), (Pairs{{"PI", "AB"}}));
}

TEST(VpdMap, LengthThatLeadsOutsideIsCut) {
  EXPECT_EQ(Map(Item("PN", "AB", 255)), (Pairs{{"PN", "AB"}}));
  EXPECT_EQ(Map(Item("PN", "", 1)), (Pairs{{"PN", ""}}));
  EXPECT_EQ(Map(Resource('\x82', 0xffff, "AB")), (Pairs{{"PI", "AB"}}));
  EXPECT_EQ(Map(Resource('\x82', 0xff00, "")), (Pairs{{"PI", ""}}));
}

TEST(VpdMap, MissingLengthIsZero) {
  EXPECT_EQ(Map("PN"), (Pairs{{"PN", ""}}));
  EXPECT_EQ(Map("\x82"), (Pairs{{"PI", ""}}));
  EXPECT_EQ(Map("\x82\x09"), (Pairs{{"PI", ""}}));
}

TEST(VpdMap, KeywordOfFewerCharactersIsPaddedInFront) {
  EXPECT_EQ(Map("P"), (Pairs{{" P", ""}}));
  EXPECT_EQ(Map(Item({'P', '\0'}, "1")), (Pairs{{" P", "1"}}));
  EXPECT_EQ(Map(Item({'\0', 'P'}, "1")), (Pairs{{"  ", "1"}}));
}

TEST(VpdMap, LengthOfTheStringHasTwoBytesAndThatOfAnItemOne) {
  const std::string name(0x0123, 'n');
  const std::string value(255, 'v');
  EXPECT_EQ(Map(String(name) + Item("PN", value) + Item("SN", "B")),
            (Pairs{{"PI", name}, {"PN", value}, {"SN", "B"}}));
}

TEST(VpdMap, ZerosAreItemsWithoutAName) {
  EXPECT_EQ(Map(std::string(1024, '\0')), (Pairs{{"  ", ""}}));
}

TEST(VpdMap, LongestValueIsWhole) {
  const std::string name(1021, 'n');
  EXPECT_EQ(Map(String(name)), (Pairs{{"PI", name}}));
}

}  // namespace
