#include "port/sfp/sfp_diagnostics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "port/sfp/dmi_calculation.h"
#include "sfp_test_image.h"

namespace {

constexpr std::uint32_t kRows[] = {0, 2, 3, 4, 5};

// Puts numbers of the test's own in place of the calculation's.
class SfpDiagnostics : public testing::Test {
 protected:
  void SetUp() override { CalculateDetailsDMIData(TestImage::Sfp()); }

  // Value, High Alarm, High Warning, Low Warning, Low Alarm of a quantity from 1 on.
  static void Store(std::uint32_t quantity, float value, float high_alarm, float high_warning,
                    float low_warning, float low_alarm) {
    float* const entry = &valueArray[(quantity - 1) * 5];
    entry[kValue] = value;
    entry[kHighAlarm] = high_alarm;
    entry[kHighWarning] = high_warning;
    entry[kLowWarning] = low_warning;
    entry[kLowAlarm] = low_alarm;
  }

  static void SetCoefficients(float c0, float c1, float c2, float c3, float c4) {
    const float coefficients[] = {c0, c1, c2, c3, c4};
    std::copy(std::begin(coefficients), std::end(coefficients), rxPowerArray);
  }
};

TEST_F(SfpDiagnostics, InternalCalibrationShowsTheStoredValue) {
  for (std::uint32_t quantity = 1; quantity <= 4; ++quantity) {
    offsetArray[quantity - 1] = 1000.0F;  // takes no part while the slope is 0
    Store(quantity, 1.5F, 5.5F, 4.5F, -1.5F, -2.5F);
    const float expected[] = {1.5F, 5.5F, 4.5F, -1.5F, -2.5F};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(GetDiagValue(kRows[i], quantity), expected[i]);
  }
}

TEST_F(SfpDiagnostics, ExternalCalibrationAppliesToValueAndThresholds) {
  for (std::uint32_t quantity = 1; quantity <= 4; ++quantity) {
    slopeArray[quantity - 1] = 2.5F;
    offsetArray[quantity - 1] = -10.0F;
    Store(quantity, 4.0F, 8.0F, 6.0F, 2.0F, -1.0F);
    const float expected[] = {0.0F, 10.0F, 5.0F, -5.0F, -12.5F};  // 2.5 r - 10
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(GetDiagValue(kRows[i], quantity), expected[i]);
  }
}

// r * slope rounded to single precision before the offset is added: 1.1 is 0x1.19999ap+0, its
// square 1.2100000524... rounds to 0x1.35c29p+0, which the offset cancels. In one operation 0x1.eb852p-27 is
// left over.
TEST_F(SfpDiagnostics, ProductIsRoundedBeforeTheOffsetIsAdded) {
  Store(1, 1.1F, 0, 0, 0, 0);
  slopeArray[0] = 1.1F;
  offsetArray[0] = -0x1.35c29p+0F;
  EXPECT_EQ(GetDiagValue(0, 1), 0.0F);
}

TEST_F(SfpDiagnostics, RxPowerWithoutCoefficientsIsFourTimesTheStoredValue) {
  Store(5, 0.25F, 1.5F, 1.25F, 0.125F, 0.0625F);
  const float expected[] = {1.0F, 6.0F, 5.0F, 0.5F, 0.25F};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(GetDiagValue(kRows[i], 5), expected[i]);
  SetCoefficients(-0.0F, 0.0F, -0.0F, 0.0F, -0.0F);
  EXPECT_EQ(GetDiagValue(0, 5), 1.0F) << "minus zero is zero";
}

TEST_F(SfpDiagnostics, RxPowerWithAnyCoefficientIsTheirSum) {
  Store(5, 2.0F, 0, 0, 0, 0);
  SetCoefficients(1.0F, 10.0F, 100.0F, 1000.0F, 10000.0F);
  EXPECT_EQ(GetDiagValue(0, 5), 22221.0F);  // every coefficient but the last times 2, and not 2 to a power
  const float expected[] = {7.0F, 14.0F, 14.0F, 14.0F, 14.0F};
  for (std::size_t i = 0; i < 5; ++i) {
    SetCoefficients(0, 0, 0, 0, 0);
    rxPowerArray[i] = 7.0F;
    EXPECT_EQ(GetDiagValue(0, 5), expected[i]) << i;
  }
}

TEST_F(SfpDiagnostics, RxPowerAddsFromTheHighestCoefficientDown) {
  Store(5, 1.0F, 0, 0, 0, 0);
  // 2^24 + 1 is no single-precision number: ((2^24 + 1) + 1) loses both, 2^24 + (1 + 1) would lose none.
  SetCoefficients(1.0F, 1.0F, 0.0F, 0.0F, 16777216.0F);
  EXPECT_EQ(GetDiagValue(0, 5), 16777216.0F);
}

TEST_F(SfpDiagnostics, OtherRowsAndQuantitiesAreZero) {
  for (std::uint32_t quantity = 1; quantity <= 5; ++quantity) {
    Store(quantity, 1, 1, 1, 1, 1);
    for (const std::uint32_t row : {1U, 6U, 0xFFFFFFFFU}) EXPECT_EQ(GetDiagValue(row, quantity), 0.0F);
  }
  for (const std::uint32_t quantity : {0U, 6U, 0xFFFFFFFFU}) {
    for (const std::uint32_t row : kRows) EXPECT_EQ(GetDiagValue(row, quantity), 0.0F);
  }
}

struct StatusRow {
  float value;
  const char* first_four;
  const char* fifth;
};

TEST_F(SfpDiagnostics, StatusComparesWithTheThresholds) {
  // High Alarm 80, High Warning 70, Low Warning 20, Low Alarm 10, all times a power of two that is exact.
  const StatusRow rows[] = {
      {81, "Fault", "Fault"},
      {80, "Fault", "Fault"},
      {79.5F, "Warning", "Warning"},
      {70, "Warning", "Warning"},
      {69.5F, "Normal", "Normal"},
      {20.5F, "Normal", "Normal"},
      // The first four have no low-side warning: at the Low Warning they are at fault.
      {20, "Fault", "Warning"},
      {10.5F, "Fault", "Warning"},
      {10, "Fault", "Fault"},
      {-5, "Fault", "Fault"},
  };
  for (const StatusRow& row : rows) {
    for (std::uint32_t quantity = 1; quantity <= 5; ++quantity) {
      Store(quantity, row.value, 80, 70, 20, 10);
      EXPECT_STREQ(GetDiagStatus(quantity), quantity == 5 ? row.fifth : row.first_four)
          << row.value << ' ' << quantity;
    }
  }
}

TEST_F(SfpDiagnostics, LowAlarmOfTheFirstFourTakesNoPart) {
  for (std::uint32_t quantity = 1; quantity <= 4; ++quantity) {
    Store(quantity, 50, 80, 70, 20, 60);
    EXPECT_STREQ(GetDiagStatus(quantity), "Normal");
  }
  Store(5, 50, 80, 70, 20, 60);
  EXPECT_STREQ(GetDiagStatus(5), "Fault");
}

TEST_F(SfpDiagnostics, StatusTakesCalibratedNumbers) {
  Store(1, 50, 80, 70, 20, 10);
  slopeArray[0] = -1.0F;  // turns the order round: -50 is above -80
  EXPECT_STREQ(GetDiagStatus(1), "Fault");
  Store(5, 50, 80, 70, 20, 10);
  SetCoefficients(0, -1.0F, 0, 0, 0);
  EXPECT_STREQ(GetDiagStatus(5), "Fault");
}

TEST_F(SfpDiagnostics, StatusOfWhatIsNoNumberIsNormal) {
  Store(1, std::nanf(""), 80, 70, 20, 10);
  EXPECT_STREQ(GetDiagStatus(1), "Normal");
}

std::string Shown(SfpImage image) {
  return Displayed([&](ReportText& text) {
    CalculateDetailsDMIData(image);
    DisplaySfpDiagnostics(text, image, true);
  });
}

// Temperature 25.5 of 90, 85, -5, -10; voltage 3.3 of 3.6, 3.5, 3.1, 3.0; bias 7 mA of 12, 11, 3, 2; transmit
// power 0.5 mW of 1, 0.8, 0.2, 0.1; receive power stored 0.1 mW, shown four times as large, of 0.25, 0.2,
// 0.0125, 0.01.
TestImage InternallyCalibrated() {
  TestImage image = TestImage::Sfp();
  image.Set(92, {0x68});
  image.Set(256, {0x5a, 0x00, 0xf6, 0x00, 0x55, 0x00, 0xfb, 0x00});
  image.Set(264, {0x8c, 0xa0, 0x75, 0x30, 0x88, 0xb8, 0x79, 0x18});  // 36000, 30000, 35000, 31000
  image.Set(272, {0x17, 0x70, 0x03, 0xe8, 0x15, 0x7c, 0x05, 0xdc});  // 6000, 1000, 5500, 1500
  image.Set(280, {0x27, 0x10, 0x03, 0xe8, 0x1f, 0x40, 0x07, 0xd0});  // 10000, 1000, 8000, 2000
  image.Set(288, {0x09, 0xc4, 0x00, 0x64, 0x07, 0xd0, 0x00, 0x7d});  // 2500, 100, 2000, 125
  image.Set(352, {0x19, 0x80, 0x80, 0xe8, 0x0d, 0xac, 0x13, 0x88, 0x03, 0xe8});
  return image;
}

TEST(DisplaySfpDiagnosticsTable, LinesUp) {
  const std::string shown = Shown(InternallyCalibrated());
  const std::string table =
      "\n                 Temperature   Voltage     Tx Bias    Tx Power    Rx Power\n"
      "\n                     (C)         (V)        (mA)        (mW)        (mW)\n"
      "\n              --------------   -------     -------    --------    --------\n"
      "\n        Value      25.50         3.30        7.00      0.5000      0.4000\n"
      "\n       Status     Normal       Normal      Normal      Normal      Normal\n"
      "\n   High Alarm      90.00         3.60       12.00      1.0000      1.0000\n"
      "\n High Warning      85.00         3.50       11.00      0.8000      0.8000\n"
      "\n  Low Warning      -5.00         3.10        3.00      0.2000      0.0500\n"
      "\n    Low Alarm     -10.00         3.00        2.00      0.1000      0.0400\n";
  const std::size_t begin = shown.find("\n\n");
  ASSERT_NE(begin, std::string::npos);
  EXPECT_EQ(shown.substr(begin + 1), table);
}

// One quantity after the other out of its limits: 127 degrees, and no voltage, bias or power at all.
TEST(DisplaySfpDiagnosticsTable, EachQuantityHasItsOwnStatus) {
  const char* const lines[] = {
      "\n       Status      Fault       Normal      Normal      Normal      Normal\n",
      "\n       Status     Normal        Fault      Normal      Normal      Normal\n",
      "\n       Status     Normal       Normal       Fault      Normal      Normal\n",
      "\n       Status     Normal       Normal      Normal       Fault      Normal\n",
      "\n       Status     Normal       Normal      Normal      Normal       Fault\n",
  };
  std::size_t place = 352;
  for (const char* line : lines) {
    TestImage image = InternallyCalibrated();
    image.Set(place, {static_cast<std::uint8_t>(place == 352 ? 0x7f : 0), 0});
    EXPECT_NE(Shown(image).find(line), std::string::npos) << place;
    place += 2;
  }
}

TEST(DisplaySfpDiagnosticsTable, IsShownOnlyForModulesWithDiagnostics) {
  TestImage image = InternallyCalibrated();
  image.Set(92, {0xbf});
  EXPECT_EQ(Shown(image).find("Temperature"), std::string::npos);
  EXPECT_EQ(valueArray[0], 25.5F) << "the calculation has run all the same";
}

TEST(DisplaySfpDiagnosticsTable, IsNeverShownForAQsfpModule) {
  TestImage image = InternallyCalibrated();
  image.Set(0, {0x11}).Set(220, {0xff});
  EXPECT_EQ(Shown(image).find("Temperature"), std::string::npos);
}

// The widest numbers that a module can ask for keep their line.
TEST(DisplaySfpDiagnosticsTable, WideNumbersStayWhole) {
  TestImage image = TestImage::Sfp();
  for (std::size_t i = 1; i < kSfpImageBytes; ++i) image.Set(i, {0xff});
  image.Set(312, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x7f, 0xff, 0xff, 0xff});
  EXPECT_NE(Shown(image).find("340282346638528859811704183484516925440.0000\n"), std::string::npos);
}

}  // namespace
