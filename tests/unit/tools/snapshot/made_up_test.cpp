#include "tools/snapshot/made_up.h"

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>
#include <vector>

namespace {

using snapshot::MadeUp;

template <class Make>
std::string Made(std::string original, Make make) {
  make(std::span<std::uint8_t>(reinterpret_cast<std::uint8_t*>(original.data()), original.size()));
  return original;
}

std::string Text(MadeUp& made_up, const std::string& original) {
  return Made(original, [&](std::span<std::uint8_t> bytes) { made_up.Text(bytes); });
}
std::string Nqn(MadeUp& made_up, const std::string& original) {
  return Made(original, [&](std::span<std::uint8_t> bytes) { made_up.Nqn(bytes); });
}
std::string Octets(MadeUp& made_up, const std::string& original) {
  return Made(original, [&](std::span<std::uint8_t> bytes) { made_up.Octets(bytes); });
}

// A text with the kinds of its characters: A, a, 0, and others as they are.
std::string FormOf(std::string text) {
  for (char& character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (std::isupper(byte) != 0) character = 'A';
    if (std::islower(byte) != 0) character = 'a';
    if (std::isdigit(byte) != 0) character = '0';
  }
  return text;
}

TEST(MadeUpText, KeepsTheForm) {
  MadeUp made_up;
  const std::string original = "AB-12345 xy.z/Q";
  const std::string made = Text(made_up, original);
  EXPECT_NE(made, original);
  EXPECT_EQ(FormOf(made), "AA-00000 aa.a/A");
}

TEST(MadeUpText, EqualForEqualAlsoInAnotherSnapshot) {
  MadeUp one;
  MadeUp other;
  Text(other, "something else before it");
  EXPECT_EQ(Text(one, "AB12345"), Text(other, "AB12345"));
  EXPECT_EQ(Text(one, "AB12345"), Text(one, "AB12345"));
}

TEST(MadeUpText, BlanksAndZerosAtTheEndAreNoPartOfIt) {
  MadeUp made_up;
  const std::string plain = Text(made_up, "AB12345");
  EXPECT_EQ(Text(made_up, "AB12345   "), plain + "   ");
  EXPECT_EQ(Text(made_up, std::string("AB12345\0\0", 9)), plain + std::string(2, '\0'));
}

TEST(MadeUpText, DifferentForDifferent) {
  MadeUp made_up;
  std::set<std::string> made;
  for (int i = 0; i < 1000; ++i) {
    const std::string original = "A" + std::to_string(1000 + i);
    const std::string text = Text(made_up, original);
    EXPECT_NE(text, original);
    made.insert(text);
  }
  EXPECT_EQ(made.size(), 1000u);
}

TEST(MadeUpText, ShortestFormsThatHaveNoRoomAreLeftToChance) {
  MadeUp made_up;
  for (int i = 0; i < 10; ++i) EXPECT_EQ(FormOf(Text(made_up, std::to_string(i))), "0");
  EXPECT_EQ(Text(made_up, ""), "");
  EXPECT_EQ(Text(made_up, "--"), "--");
}

TEST(MadeUpText, BytesOutsideAsciiAreReplacedByOthersOfThem) {
  MadeUp made_up;
  const std::string made = Text(made_up, "\xc3\xab\xff\xfe");
  EXPECT_NE(made, "\xc3\xab\xff\xfe");
  for (const char character : made) EXPECT_GE(static_cast<unsigned char>(character), 0x80);
}

TEST(MadeUpNqn, StandardBeginningsStay) {
  MadeUp made_up;
  const std::string named = "nqn.2026-01.com.example:host7";
  EXPECT_EQ(Nqn(made_up, named).substr(0, 12), "nqn.2026-01.");
  EXPECT_EQ(FormOf(Nqn(made_up, named)), FormOf(named));
  EXPECT_NE(Nqn(made_up, named), named);

  const std::string uuid = "nqn.2014-08.org.nvmexpress:uuid:6D1f402a-9b7c-4e15-8a33-5c0e71d246b8";
  const std::string made = Nqn(made_up, uuid);
  EXPECT_EQ(made.substr(0, 32), uuid.substr(0, 32));
  EXPECT_NE(made, uuid);
  EXPECT_EQ(made.substr(32).find_first_not_of("0123456789abcdefABCDEF-"), std::string::npos);
  EXPECT_EQ(made[40], '-');
}

TEST(MadeUpNqn, DiscoveryServiceHasOneNameEverywhere) {
  MadeUp made_up;
  const std::string name = "nqn.2014-08.org.nvmexpress.discovery";
  EXPECT_EQ(Nqn(made_up, name), name);
}

TEST(MadeUpNqn, OtherTextsAreTexts) {
  MadeUp made_up;
  const std::string made = Nqn(made_up, "nqn.20x6-01.com.example");
  EXPECT_NE(made.substr(0, 4), "nqn.");
  EXPECT_EQ(FormOf(made), FormOf("nqn.20x6-01.com.example"));
}

// Each character of "nqn.0000-00." counts: of any other beginning all letters and digits are made up.
TEST(MadeUpNqn, BeginningThatIsWrongInOnePlaceIsMadeUpWhole) {
  const std::string good = "nqn.2026-01.com.example";
  for (std::size_t place = 0; place < 12; ++place) {
    MadeUp made_up;
    std::string name = good;
    name[place] = '_';
    const std::string made = Nqn(made_up, name);
    EXPECT_NE(made.substr(0, 12), name.substr(0, 12)) << name;
    EXPECT_EQ(FormOf(made), FormOf(name));
  }
}

TEST(MadeUpOctets, AllButTheZerosAtTheEnd) {
  MadeUp made_up;
  const std::string made = Octets(made_up, std::string("\x01\x00\x02\x00\x00", 5));
  EXPECT_EQ(made.size(), 5u);
  EXPECT_NE(made.substr(0, 3), std::string("\x01\x00\x02", 3));
  EXPECT_EQ(made.substr(3), std::string(2, '\0'));
  EXPECT_EQ(Octets(made_up, std::string(6, '\0')), std::string(6, '\0'));
}

TEST(MadeUpOctets, AreOtherThanThoseOfATextOfTheSameBytes) {
  MadeUp made_up;
  EXPECT_NE(Octets(made_up, "AB12345"), Text(made_up, "AB12345"));
}

}  // namespace
