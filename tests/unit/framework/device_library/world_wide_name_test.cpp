#include "framework/device_library/world_wide_name.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>

#include "framework/device_library/octet_text.h"
#include "framework/device_library/port_id.h"

namespace {

// The name that a text begins with and what follows it, or "nothing".
std::string ReadAs(const char* text) {
  WorldWideName name = {};
  const char* const end = ReadName(text, name);
  return end == nullptr ? "nothing" : name.Text() + "|" + end;
}

TEST(ReadName, ReadsEightOctets) {
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5f"), "21:00:00:11:22:33:44:5f|");
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5F"), "21:00:00:11:22:33:44:5f|");
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5f-3"), "21:00:00:11:22:33:44:5f|-3");
  EXPECT_EQ(ReadAs("1:2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
}

TEST(ReadName, ReadsWhatAScanReads) {
  EXPECT_EQ(ReadAs(" 1: 2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("0x1:0X2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("121:2:3:4:5:6:7:8"), "21:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("-1:+2:3:4:5:6:7:8"), "ff:02:03:04:05:06:07:08|");
}

TEST(ReadName, NeedsAllOctets) {
  for (const char* const text :
       {"", ":", "21", "21:00:00:11:22:33:44", "21:00:00:11:22:33:44:", "21:00:00:11:22:33:44:x",
        "21-00:00:11:22:33:44:5f", "21 :00:00:11:22:33:44:5f", "g1:00:00:11:22:33:44:5f"}) {
    EXPECT_EQ(ReadAs(text), "nothing") << text;
  }
}

TEST(ReadName, NeedsADigitPastThePrefix) {
  EXPECT_EQ(ReadAs("0x:1:2:3:4:5:6:7"), "nothing");
}

TEST(WorldWideName, ZeroIsNoPort) {
  EXPECT_TRUE((WorldWideName{0, 0, 0, 0, 0, 0, 0, 0}).IsZero());
  EXPECT_FALSE((WorldWideName{0, 0, 0, 0, 0, 0, 0, 1}).IsZero());
  EXPECT_FALSE((WorldWideName{1, 0, 0, 0, 0, 0, 0, 0}).IsZero());
}

constexpr WorldWideName kName = {0x21, 0x00, 0x00, 0x0E, 0x1E, 0xAB, 0xCD, 0xFF};

TEST(WorldWideName, ComparesAllOctets) {
  for (std::size_t i = 0; i < 8; ++i) {
    WorldWideName other = kName;
    EXPECT_TRUE(kName == other);
    other[i] ^= 1;
    EXPECT_FALSE(kName == other) << "octet " << i;
  }
}

TEST(WorldWideName, PrintsLowerCaseOctetsWithColons) {
  EXPECT_EQ(kName.Text(), "21:00:00:0e:1e:ab:cd:ff");
  EXPECT_EQ(kName.Text().size(), WorldWideName::kTextLength);
  std::string text = "FC_";
  kName.AppendTo(text);
  EXPECT_EQ(text, "FC_21:00:00:0e:1e:ab:cd:ff");
}

TEST(WorldWideName, IsEightOctetsOfARecord) {
  EXPECT_TRUE(std::is_trivially_copyable_v<WorldWideName>);
  EXPECT_TRUE(std::is_aggregate_v<WorldWideName>);
  EXPECT_EQ(alignof(WorldWideName), 1u);
}

TEST(TakeName, TakesTheFormThatIsPrinted) {
  std::string_view text = "21:00:00:0e:1e:ab:cd:ff-7";
  WorldWideName name = {};
  ASSERT_TRUE(TakeName(text, name));
  EXPECT_TRUE(name == kName);
  EXPECT_EQ(text, "-7");
}

TEST(TakeName, TakesNoOtherForm) {
  for (std::string_view text :
       {"", "21:00:00:0e:1e:ab:cd:f", "21:00:00:0E:1e:ab:cd:ff", " 21:00:00:0e:1e:ab:cd:ff",
        "21-00:00:0e:1e:ab:cd:ff", "2100000e1eabcdff0000000", "g1:00:00:0e:1e:ab:cd:ff",
        "+1:00:00:0e:1e:ab:cd:ff"}) {
    WorldWideName name;
    EXPECT_FALSE(TakeName(text, name)) << text;
  }
}

TEST(ReadLeadingOctets, KeepsThoseAheadOfWhatDoesNotRead) {
  EXPECT_EQ(ReadLeadingOctets("21:0:0:e:1E:ab:CD:ff").Text(), "21:00:00:0e:1e:ab:cd:ff");
  EXPECT_EQ(ReadLeadingOctets("21:43 65").Text(), "21:43:00:00:00:00:00:00");
  EXPECT_EQ(ReadLeadingOctets("").Text(), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(ReadLeadingOctets("0x:21").Text(), "00:21:00:00:00:00:00:00");
}

TEST(PortId, PrintsLowerCaseOctetsWithColons) {
  EXPECT_EQ((PortId{0x01, 0xAB, 0xFF}).Text(), "01:ab:ff");
  EXPECT_EQ((PortId{0, 0, 0}).Text(), "00:00:00");
}

TEST(PortId, ComparesAllOctets) {
  constexpr PortId kId = {1, 2, 3};
  EXPECT_TRUE((kId == PortId{1, 2, 3}));
  EXPECT_FALSE((kId == PortId{0, 2, 3}));
  EXPECT_FALSE((kId == PortId{1, 0, 3}));
  EXPECT_FALSE((kId == PortId{1, 2, 0}));
}

TEST(OctetText, PutsTheSeparatorBetweenOctets) {
  constexpr std::uint8_t kOctets[] = {0x00, 0x9A, 0xF0};
  EXPECT_EQ(OctetText(kOctets), "00:9a:f0");
  EXPECT_EQ(OctetText(kOctets, ""), "009af0");
  EXPECT_EQ(OctetText(kOctets, ", "), "00, 9a, f0");
  EXPECT_EQ(OctetText({}), "");
}

}  // namespace
