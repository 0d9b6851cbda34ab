#include "diag/dport_report.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "diag/logarithm.h"

namespace {

std::string Printed(float dbm) {
  char text[64];
  std::snprintf(text, sizeof text, "%f", static_cast<double>(dbm));
  return text;
}

TEST(PowerToDbm, PowersOfTen) {
  EXPECT_EQ(PowerToDbm(10000), 0.0F);  // 1 mW
  EXPECT_EQ(PowerToDbm(1000), -10.0F);
  EXPECT_EQ(PowerToDbm(100), -20.0F);
  EXPECT_EQ(PowerToDbm(1), -40.0F);
}

TEST(PowerToDbm, HalfIsThreeDecibelsLess) {
  EXPECT_EQ(Printed(PowerToDbm(5000)), "-3.010300");
  EXPECT_EQ(Printed(PowerToDbm(2500)), "-6.020600");
  EXPECT_EQ(Printed(PowerToDbm(65535)), "8.164733");
}

TEST(PowerToDbm, IsSinglePrecision) {
  EXPECT_EQ(Printed(PowerToDbm(7000)), "-1.549019");  // in double precision -1.549020
  EXPECT_EQ(Printed(PowerToDbm(12000)), "0.791813");  // in double precision 0.791812
}

TEST(PowerToDbm, AppliesItsFactorsInOrder) {
  EXPECT_EQ(Printed(PowerToDbm(87)), "-20.604809");  // -20.604805 with 0.001 before 0.1
}

TEST(PowerToDbm, NoPowerIsNegativeInfinity) {
  EXPECT_TRUE(std::isinf(PowerToDbm(0)));
  EXPECT_LT(PowerToDbm(0), 0.0F);
}

// The build machine's C library is the measure: Debian 12's, glibc 2.36.
TEST(PowerToDbm, EveryPowerHasTheBitsOfTheCLibrary) {
  for (std::uint32_t raw = 1; raw <= UINT16_MAX; ++raw) {
    const float milliwatts = static_cast<float>(raw) * 0.1F * 0.001F;
    ASSERT_EQ(PowerToDbm(static_cast<std::uint16_t>(raw)), 10.0F * std::log10(milliwatts)) << raw;
  }
}

TEST(Log10, EveryPowerIsWithinTwoUnitsOfTheLogarithm) {
  for (std::uint32_t raw = 1; raw <= UINT16_MAX; ++raw) {
    const float milliwatts = static_cast<float>(raw) * 0.1F * 0.001F;
    const long double exact = std::log10(static_cast<long double>(milliwatts));
    const float size = std::fabs(static_cast<float>(exact));
    const long double unit = static_cast<long double>(std::nextafter(size, INFINITY)) - size;
    ASSERT_LE(std::fabs(static_cast<long double>(Log10(milliwatts)) - exact), 2 * unit) << raw;
  }
}

TEST(PowerToDbmOrZero, DiffersOnlyForNoPower) {
  EXPECT_EQ(PowerToDbmOrZero(0), 0.0F);
  EXPECT_EQ(PowerToDbmOrZero(1), PowerToDbm(1));
  EXPECT_EQ(PowerToDbmOrZero(65535), PowerToDbm(65535));
}

TEST(AllowablePowerLoss, GrowsBySevenDecibelsPerKilometre) {
  EXPECT_EQ(AllowablePowerLoss(0), 0.0);
  EXPECT_NEAR(AllowablePowerLoss(1000), 7.0, 1e-12);
  EXPECT_NEAR(AllowablePowerLoss(UINT32_MAX), 30064771.065, 1e-6);
}

TEST(DPortResultLabel, EveryOtherStatusIsUnknown) {
  int known = 0;
  for (int status = 0; status <= 255; ++status) {
    if (std::string(DPortResultLabel(static_cast<std::uint8_t>(status))) != "Unknown") ++known;
  }
  EXPECT_EQ(known, 15);
}

TEST(WriteDPortReport, LinesThatDoNotFitAreDroppedWhole) {
  ReportText text(64);
  DPortResultRecord record = {};
  record.start_time = {"now\n"};
  WriteDPortReport(text, record, true);
  EXPECT_STREQ(text.Text(), "Start Time: now\n      Stop Time:       HBA Port Value: 0x0\n");
}

}  // namespace
