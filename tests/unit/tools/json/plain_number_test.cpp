#include "tools/json/plain_number.h"

#include <gtest/gtest.h>

#include <string_view>

namespace zfc_json {
namespace {

struct Row {
  std::string_view value;
  std::string_view number;
  std::string_view unit;
};

TEST(PlainNumber, TakesNumberAndUnitApart) {
  constexpr Row kRows[] = {
      {"0", "0", ""},
      {"41", "41", ""},
      {"-5.00", "-5.00", ""},
      {"-0.25", "-0.25", ""},
      {"18446744073709551615", "18446744073709551615", ""},
      {"-9223372036854775808", "-9223372036854775808", ""},
      {"36 (C)", "36", "C"},
      {"3.300000000 V", "3.300000000", "V"},
      {"7.000000000 mA", "7.000000000", "mA"},
      {"0.600000000 mW", "0.600000000", "mW"},
      {"-2.218487 dBm", "-2.218487", "dBm"},
      {"16 Gbps", "16", "Gbps"},
      {"2.5 Gtps", "2.5", "Gtps"},
      {"610 ns", "610", "ns"},
      {"30 (ms)", "30", "ms"},
      {"25 meters", "25", "meters"},
      {"4 Bytes", "4", "Bytes"},
      {"12800 MBytes/Sec", "12800", "MBytes/Sec"},
  };
  for (const Row& row : kRows) {
    const PlainNumber found = PlainNumberOf("Label", row.value);
    EXPECT_EQ(found.number, row.number) << row.value;
    EXPECT_EQ(found.unit, row.unit) << row.value;
  }
}

TEST(PlainNumber, TakesNothingElse) {
  constexpr std::string_view kValues[] = {
      "",
      "NA",
      "-",
      "-0",
      "0006",
      "00",
      "01.5",
      "+5",
      ".5",
      "5.",
      "1.2.3",
      "9.12.01",
      "0x1c9e",
      "1e5",
      "nan",
      "-inf",
      "16_Gbps",
      "4 8 16 Gbps",
      "400, 800 MBytes/Sec",
      "16  Gbps",
      "16 gbps",
      "16 Gbps ",
      "36 (C",
      "36 ()",
      "41 (C) V",
      "01:0a:ff",
      "18446744073709551616",
      "-9223372036854775809",
      "1234567890123456789.5",
      "1.1234567890123456789",
      "5 ",
      " 5",
      "x8",
      "--5",
      "5 LUN",
  };
  for (const std::string_view value : kValues) {
    EXPECT_EQ(PlainNumberOf("Label", value).number, "") << value;
    EXPECT_EQ(PlainNumberOf("Label", value).unit, "") << value;
  }
}

TEST(PlainNumber, FindsTheUnitInTheLabel) {
  EXPECT_EQ(PlainNumberOf("Temperature In Celsius", "51").unit, "C");
  EXPECT_EQ(PlainNumberOf("Lun Size In MB", "102400").unit, "MB");
  EXPECT_EQ(PlainNumberOf("Temperature In Celsius", "NA").unit, "");
  EXPECT_EQ(PlainNumberOf("Temperature In Celsius", "51 V").unit, "V");
}

TEST(WholeNumber, KeepsTo64Bits) {
  for (const std::string_view text :
       {"0", "7", "-1", "4294967295", "18446744073709551615", "-9223372036854775808"}) {
    EXPECT_TRUE(IsWholeNumber(text)) << text;
  }
  for (const std::string_view text : {"", "-", "-0", "00", "1.0", "18446744073709551616",
                                      "-9223372036854775809", "99999999999999999999", "1 ", "a"}) {
    EXPECT_FALSE(IsWholeNumber(text)) << text;
  }
}

}  // namespace
}  // namespace zfc_json
