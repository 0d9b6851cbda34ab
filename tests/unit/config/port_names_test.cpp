#include "config/port_names.h"

#include <gtest/gtest.h>

#include <string>

#include "discovery/identifiers.h"

namespace {

// The name that a text begins with and what is left behind it, or "nothing".
std::string ReadAs(const char* text) {
  WorldWideName name = {};
  const char* const end = ReadName(text, name);
  return end == nullptr ? "nothing" : NameText(name) + "|" + end;
}

TEST(PortNamesTest, ReadsEightOctets) {
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5f"), "21:00:00:11:22:33:44:5f|");
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5F"), "21:00:00:11:22:33:44:5f|");
  EXPECT_EQ(ReadAs("21:00:00:11:22:33:44:5f-3"), "21:00:00:11:22:33:44:5f|-3");
  EXPECT_EQ(ReadAs("1:2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
}

TEST(PortNamesTest, ReadsWhatAScanReads) {
  EXPECT_EQ(ReadAs(" 1: 2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("0x1:0X2:3:4:5:6:7:8"), "01:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("121:2:3:4:5:6:7:8"), "21:02:03:04:05:06:07:08|");
  EXPECT_EQ(ReadAs("-1:+2:3:4:5:6:7:8"), "ff:02:03:04:05:06:07:08|");
}

TEST(PortNamesTest, NeedsAllOctets) {
  for (const char* const text :
       {"", ":", "21", "21:00:00:11:22:33:44", "21:00:00:11:22:33:44:", "21:00:00:11:22:33:44:x",
        "21-00:00:11:22:33:44:5f", "21 :00:00:11:22:33:44:5f", "g1:00:00:11:22:33:44:5f"}) {
    EXPECT_EQ(ReadAs(text), "nothing") << text;
  }
}

TEST(PortNamesTest, ZeroIsNoPort) {
  EXPECT_TRUE(IsZero({0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(IsZero({0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_FALSE(IsZero({1, 0, 0, 0, 0, 0, 0, 0}));
}

}  // namespace
