#include <gtest/gtest.h>

#include "base/text.h"

namespace {

TEST(LabText, Numbers) {
  std::uint64_t number = 0;
  EXPECT_TRUE(lab::ReadNumber("31", 31, number) && number == 31);
  EXPECT_TRUE(lab::ReadNumber("0x1F", 31, number) && number == 31);
  EXPECT_TRUE(lab::ReadNumber("007", 31, number) && number == 7);
  for (const char* text : {"", "0x", "-1", "+1", " 1", "1 ", "32", "1f", "18446744073709551616"}) {
    EXPECT_FALSE(lab::ReadNumber(text, 31, number)) << text;
  }
}

TEST(LabText, Versions) {
  ComponentVersion version{};
  EXPECT_TRUE(lab::ReadVersion("9.12.01", version));
  EXPECT_EQ(lab::VersionText(version), "9.12.01");
  EXPECT_TRUE(lab::ReadVersion("3.62", version));
  EXPECT_EQ(lab::VersionText(version), "3.62.00");
  for (const char* text : {"", "9", "9.", ".9", "9..1", "9.1.1.1", "9.256", "9.1a", "9.-1", "9.1.1."}) {
    EXPECT_FALSE(lab::ReadVersion(text, version)) << text;
    EXPECT_TRUE(version.AllZero()) << text;
  }
}

TEST(LabText, Octets) {
  std::uint8_t octets[3] = {};
  EXPECT_TRUE(lab::ReadOctets("0a:FF:01", octets));
  EXPECT_EQ(lab::OctetText(octets), "0a:ff:01");
  for (const char* text : {"", "0a:ff", "0a-ff-01", "0a:ff:0g", "0a:ff:01:", "a:ff:01:"}) {
    EXPECT_FALSE(lab::ReadOctets(text, octets)) << text;
  }
}

TEST(LabText, Times) {
  FlashMemoBlock memo{};
  EXPECT_TRUE(lab::ReadTime("2024-02-29 23:59:59", memo));
  EXPECT_EQ(lab::TimeText(memo), "2024-02-29 23:59:59");
  for (const char* text : {"", "2023-02-29 00:00:00", "2024-13-01 00:00:00", "2024-00-01 00:00:00",
                           "2024-01-01T00:00:00", "2024-01-01 00:60:00", "2024-01-01 0:00:000"}) {
    EXPECT_FALSE(lab::ReadTime(text, memo)) << text;
  }
}

TEST(LabText, QuotedIsOneLine) {
  EXPECT_EQ(lab::Quoted("a\"\\\n\r\t\x7f"), "\"a\\\"\\\\\\n\\r\\t\\x7f\"");
}

}  // namespace
