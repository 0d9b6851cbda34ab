#include "port/sfp/dmi_calculation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "sfp_test_image.h"
#include "support/unit_debug_log.h"

namespace {

float Stored(DmiQuantity quantity, DmiEntry entry) {
  return valueArray[std::uint32_t{quantity} * kEntriesPerQuantity + std::uint32_t{entry}];
}

// One entry after a calculation on an image with these two bytes at `offset`.
float Calculated(std::size_t offset, std::uint8_t first, std::uint8_t second, DmiQuantity quantity,
                 DmiEntry entry) {
  CalculateDetailsDMIData(TestImage::Sfp().Set(offset, {first, second}));
  return Stored(quantity, entry);
}

struct Row {
  std::uint8_t first, second;
  float expected;
};

TEST(Temperature, ValueIsDegreesAndTwoHundredFiftySixths) {
  for (const Row& row : {Row{0x19, 0x80, 25.5F}, Row{0x00, 0x01, 0.00390625F}, Row{0x7f, 0xff, 127.99609375F},
                         // Unsigned: -1.0 and -40.5 degrees read as 255 and as 215.5.
                         Row{0xff, 0x00, 255.0F}, Row{0xd7, 0x80, 215.5F}}) {
    EXPECT_EQ(Calculated(352, row.first, row.second, kTemperature, kValue), row.expected) << int{row.first};
  }
}

TEST(Temperature, HighThresholdsHaveTheDegreesInTheLowByte) {
  const Row rows[] = {
      {0x5a, 0x00, 90.0F},    {0x00, 0x00, 0.0F},
      {0xff, 0x00, 255.0F},   {0x55, 0x80, 32853.0F},  // 0x8055; bit 8 is clear
      {0x55, 0x02, 597.0F},                            // 0x0255
      {0x55, 0x01, -85.5F},                            // 0x0155 is 341; 341 * 0.5 - 256
      {0x00, 0x01, -128.0F},                           // 0x0100 is 256; 256 * 0.5 - 256
      {0xff, 0xff, 32511.5F},                          // 65535 * 0.5 - 256
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Calculated(256, row.first, row.second, kTemperature, kHighAlarm), row.expected);
    EXPECT_EQ(Calculated(260, row.first, row.second, kTemperature, kHighWarning), row.expected);
  }
}

TEST(Temperature, LowWarningIsSignExtended) {
  const Row rows[] = {
      {0x00, 0x00, 0.0F},      {0x01, 0x00, 1.0F},    {0x02, 0x00, 2.0F},
      {0x7f, 0x00, 127.0F},    {0xf6, 0x00, -10.0F},   // 0x00f6: highest bit 7, which is set: 246 - 256
      {0x80, 0x00, -128.0F},   {0x05, 0x01, -251.0F},  // 0x0105 is 261; highest bit 8: 261 - 512
      {0x00, 0x7f, 32000.0F},                          // 0x7f00 is 32512; 32512 - 512
      {0x00, 0x80, -33280.0F},  // 0x8000 is -32768; as 32 bits its highest bit is 31: -32768 - 512
      {0xff, 0xff, -513.0F},    // -1 - 512
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Calculated(262, row.first, row.second, kTemperature, kLowWarning), row.expected)
        << int{row.first};
  }
}

TEST(Temperature, LowAlarmIsNotSignExtended) {
  const Row rows[] = {
      {0x00, 0x00, 0.0F},     {0x01, 0x00, 1.0F},    {0x7f, 0x00, 127.0F},   {0xf6, 0x00, -10.0F},
      {0xf3, 0x00, -13.0F},   {0x05, 0x01, -251.0F}, {0x00, 0x80, 32256.0F},  // 0x8000 is 32768; 32768 - 512
      {0xff, 0xff, 65023.0F},                                                 // 65535 - 512
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Calculated(258, row.first, row.second, kTemperature, kLowAlarm), row.expected)
        << int{row.first};
  }
}

struct Scaled {
  DmiQuantity quantity;
  std::size_t value;       // offset of the value's two bytes
  std::size_t thresholds;  // offset of High Alarm
};

constexpr Scaled kScaled[] = {
    {kVoltage, 354, 264}, {kTxBias, 356, 272}, {kTxPower, 358, 280}, {kRxPower, 360, 288}};

// Each number through each of the five places of its quantity.
void CheckScale(DmiQuantity quantity, std::uint8_t first, std::uint8_t second, float expected) {
  for (const Scaled& row : kScaled) {
    if (row.quantity != quantity) continue;
    EXPECT_EQ(Calculated(row.value, first, second, quantity, kValue), expected);
    EXPECT_EQ(Calculated(row.thresholds, first, second, quantity, kHighAlarm), expected);
    EXPECT_EQ(Calculated(row.thresholds + 2, first, second, quantity, kLowAlarm), expected);
    EXPECT_EQ(Calculated(row.thresholds + 4, first, second, quantity, kHighWarning), expected);
    EXPECT_EQ(Calculated(row.thresholds + 6, first, second, quantity, kLowWarning), expected);
  }
}

// The expected numbers were rounded after each operation by exact rational arithmetic. Where the operations
// were done in another order, or once in double precision, the last bit differs; that other result is in
// brackets.

TEST(Voltage, IsInHundredsOfMicrovolts) {
  CheckScale(kVoltage, 0x81, 0x8a, 0x1.a8793ep+1F);  // 33162: 3.3162
  CheckScale(kVoltage, 0x71, 0x48, 0x1.733334p+1F);  // 29000: 2.9 [n * 0.0001: 0x1.733332p+1]
  CheckScale(kVoltage, 0xff, 0xff, 0x1.a36c8cp+2F);  // 65535: 6.5535 [n * 0.0001: 0x1.a36c8ap+2]
  CheckScale(kVoltage, 0x00, 0x00, 0.0F);
}

TEST(TxBias, IsInTwoMicroamperes) {
  CheckScale(kTxBias, 0x0e, 0x04, 0x1.cb4396p+2F);  // 3588: 7.176
  CheckScale(kTxBias, 0x19, 0xc8, 0x1.a66668p+3F);  // 6600: 13.2 [rounded once: 0x1.a66666p+3]
  CheckScale(kTxBias, 0xff, 0xff, 0x1.0623d8p+7F);  // 65535: 131.07
  CheckScale(kTxBias, 0x00, 0x01, 0x1.0624dep-9F);  // 1: 0.002
}

TEST(Power, IsInTenthsOfMicrowatts) {
  for (const DmiQuantity quantity : {kTxPower, kRxPower}) {
    CheckScale(quantity, 0x16, 0xd6, 0x1.2b50b4p-1F);  // 5846: 0.5846 [n * 0.0001: 0x1.2b50bp-1]
    CheckScale(quantity, 0x1f, 0x07, 0x1.96ae7ep-1F);  // 7943: 0.7943 [n * 0.0001: 0x1.96ae7cp-1]
    CheckScale(quantity, 0x00, 0x01, 0x1.a36e3p-14F);  // 1: 0.0001 [n * 0.0001: 0x1.a36e2ep-14]
    CheckScale(quantity, 0xff, 0xff, 0x1.a36c8cp+2F);  // 65535: 6.5535
  }
}

TEST(Slope, IsTheExchangedNumberWithItsHighByteAsDecimals) {
  struct {
    std::uint8_t first, second;
    float expected;
  } const rows[] = {
      {0x00, 0x00, 0.0F},       {0x01, 0x00, 1.0F},  // the standard's 1.0: bytes exchanged 0x0001, "1.0"
      {0x00, 0x01, 256.1F},                          // bytes exchanged 0x0100, "256.1"
      {0x01, 0x02, 513.2F},                          // 0x0201, "513.2"
      {0xff, 0xff, 65535.255F},                      // "65535.255"
      {0x00, 0x0a, 2560.10F},                        // "2560.10", which is 2560.1
  };
  for (const auto& row : rows) {
    TestImage image = TestImage::Sfp();
    image.Set(336, {row.first, row.second})
        .Set(340, {row.first, row.second})
        .Set(344, {row.first, row.second});
    CalculateDetailsDMIData(image);
    EXPECT_EQ(slopeArray[kTemperature], row.expected);
    EXPECT_EQ(slopeArray[kVoltage], row.expected);
    EXPECT_EQ(slopeArray[kTxPower], row.expected);
    EXPECT_EQ(slopeArray[kTxBias], 0.0F);
  }
}

TEST(Slope, OfBiasIsTheLastByteAlone) {
  CalculateDetailsDMIData(TestImage::Sfp().Set(332, {0x01, 0x00}));
  EXPECT_EQ(slopeArray[kTxBias], 0.0F);
  CalculateDetailsDMIData(TestImage::Sfp().Set(332, {0x01, 0xff}));
  EXPECT_EQ(slopeArray[kTxBias], 255.0F);
}

TEST(Offset, OfEachQuantityIsReadInItsOwnWay) {
  TestImage image = TestImage::Sfp();
  image.Set(334, {0x12, 0xfe}).Set(338, {0x77, 0x77}).Set(342, {0xff, 0x01}).Set(346, {0xff, 0x9c});
  CalculateDetailsDMIData(image);
  EXPECT_EQ(offsetArray[kTemperature], 511.0F) << "0x01ff, unsigned";
  EXPECT_EQ(offsetArray[kVoltage], -100.0F) << "0xff9c, signed, bytes not exchanged";
  EXPECT_EQ(offsetArray[kTxBias], 254.0F) << "the last byte alone";
  EXPECT_EQ(offsetArray[kTxPower], 0.0F) << "not the field at 338";
}

TEST(Offset, OfTxPowerIsTheSlopeFieldWithAllFourBytesReversed) {
  const struct {
    std::uint8_t first, second;
    float expected;
  } rows[] = {
      {0x01, 0x00, 65536.0F},       // 0x00000100 becomes 0x00010000
      {0x00, 0x01, 16777216.0F},    // 0x00000001 becomes 0x01000000
      {0xff, 0xff, 4294901760.0F},  // 0xffff0000, unsigned
      {0x12, 0x34, 873594880.0F},   // 0x34120000
  };
  for (const auto& row : rows) {
    CalculateDetailsDMIData(TestImage::Sfp().Set(336, {row.first, row.second}));
    EXPECT_EQ(offsetArray[kTxPower], row.expected);
  }
}

TEST(FifthEntries, AreNeverWritten) {
  TestImage image = TestImage::Sfp();
  for (std::size_t i = 1; i < kSfpImageBytes; ++i) image.Set(i, {0xff});
  slopeArray[4] = 1.5F;
  offsetArray[4] = 2.5F;
  CalculateDetailsDMIData(image);
  EXPECT_EQ(slopeArray[4], 1.5F);
  EXPECT_EQ(offsetArray[4], 2.5F);
  slopeArray[4] = offsetArray[4] = 0.0F;
}

struct Pattern {
  std::uint8_t bytes[4];
  float expected;
};

constexpr Pattern kPatterns[] = {
    {{0x00, 0x00, 0x00, 0x00}, 0.0F},
    {{0x3f, 0x80, 0x00, 0x00}, 1.0F},
    {{0xbf, 0x80, 0x00, 0x00}, -1.0F},
    {{0x40, 0x49, 0x0f, 0xdb}, 0x1.921fb6p+1F},
    {{0x00, 0x80, 0x00, 0x00}, 0x1p-126F},  // the smallest with an exponent
    {{0x7f, 0x7f, 0xff, 0xff}, FLT_MAX},    // the largest with an exponent
    {{0x7f, 0x80, 0x00, 0x00}, FLT_MAX},    // infinity
    {{0xff, 0x80, 0x00, 0x00}, -FLT_MAX},   // minus infinity
    {{0x7f, 0xc0, 0x00, 0x01}, FLT_MAX},    // no number
    {{0x7f, 0x80, 0x00, 0x01}, FLT_MAX},    // no number that signals
    {{0xff, 0xff, 0xff, 0xff}, -FLT_MAX},
    {{0x00, 0x7f, 0xff, 0xff}, 0.0F},  // without an exponent: 2^-150 narrows to 0
    {{0x80, 0x00, 0x00, 0x01}, -0.0F},
    {{0x80, 0x00, 0x00, 0x00}, -0.0F},
    {{0x80, 0x80, 0x00, 0x00}, -0x1p-126F},
};

// Rx_PWR(4) is first in the image, at 312, and Rx_PWR(0) last.
TEST(RxPowerCoefficients, AreIeeeNumbers) {
  for (std::size_t index = 0; index < 5; ++index) {
    for (const Pattern& pattern : kPatterns) {
      const std::uint8_t(&b)[4] = pattern.bytes;
      CalculateDetailsDMIData(TestImage::Sfp().Set(328 - 4 * index, {b[0], b[1], b[2], b[3]}));
      for (std::size_t other = 0; other < 5; ++other) {
        EXPECT_EQ(rxPowerArray[other], other == index ? pattern.expected : 0.0F);
      }
      EXPECT_EQ(std::signbit(rxPowerArray[index]), std::signbit(pattern.expected));
    }
  }
}

TEST(CalculateDetailsDMIData, LeavesTheArraysAloneForAQsfpImage) {
  CalculateDetailsDMIData(
      TestImage::Sfp().Set(352, {0x19, 0x80}).Set(340, {0x01, 0x00}).Set(328, {0x3f, 0x80}));
  TestImage qsfp = TestImage::Qsfp();
  for (std::size_t i = 1; i < kSfpImageBytes; ++i) qsfp.Set(i, {0xff});
  CalculateDetailsDMIData(qsfp);
  EXPECT_EQ(Stored(kTemperature, kValue), 25.5F);
  EXPECT_EQ(slopeArray[kTemperature], 1.0F);
  EXPECT_EQ(rxPowerArray[0], 1.0F);
}

TEST(CalculateDetailsDMIData, ReadsWhatIsPastTheLimitAsZero) {
  TestImage image = TestImage::Sfp();
  for (std::size_t i = 1; i < kSfpImageBytes; ++i) image.Set(i, {0xff});
  for (std::size_t limit = 0; limit <= kSfpImageBytes; ++limit) CalculateDetailsDMIData(image.First(limit));
  CalculateDetailsDMIData(image.First(256));
  for (const float value : valueArray) EXPECT_EQ(value, 0.0F);
  for (const float slope : slopeArray) EXPECT_EQ(slope, 0.0F);
  for (const float coefficient : rxPowerArray) EXPECT_EQ(coefficient, 0.0F);
}

using CalculationLog = DebugLogTest;

// 10 degrees and 26 / 256; thresholds 90, 85, 504 - 512 and -10; the temperature's slope 1.0; transmit power
// alarms at 1 mW and 0.2 mW; receive power alarms at 2 mW and 0.01 mW.
TestImage ImageOfLog() {
  TestImage image = TestImage::Sfp();
  image.Set(352, {0x0a, 0x1a});
  image.Set(256, {0x5a, 0x00, 0xf6, 0x00, 0x55, 0x00, 0xf8, 0x01});
  image.Set(340, {0x01, 0x00});
  image.Set(280, {0x27, 0x10, 0x07, 0xd0});
  image.Set(288, {0x4e, 0x20, 0x00, 0x64});
  return image;
}

TEST_F(CalculationLog, TemperatureLogsItsStepsInOrder) {
  SetMask("8");
  CalculateDetailsDMIData(ImageOfLog());
  const char* const steps[] = {
      "Temperature (C) Value (valueArray[0][0]): 10.10",
      "Temp High Alaram: 90.00",
      "Temp High Warning: 85.00",
      "Temp Low Warning(before swap): 63489.00",  // 0xf801
      "Temp Low Warning(after swap): 504.00",     // 0x01f8
      "Temp Low Warning: -8.00",
      "Temp Low Alaram: -10.00",
      "Call buildSlope with intValue=1",
  };
  const std::vector<std::string> lines = Lines();
  ASSERT_GE(lines.size(), std::size(steps));
  for (std::size_t i = 0; i < std::size(steps); ++i) EXPECT_EQ(lines[i], Head("") + steps[i]);
}

TEST_F(CalculationLog, PowersLogTheirThresholdsAndTheEndIsLogged) {
  SetMask("8");
  CalculateDetailsDMIData(ImageOfLog());
  const std::vector<std::string> lines = Lines();
  const char* const texts[] = {"Tx Power High Alaram: 1.000", "Tx Power Low Alaram: 0.200",
                               "Rx Power High Alaram: 2.000", "Rx Power Low Alaram: 0.010"};
  for (const char* text : texts)
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Head("") + text), 1) << text;
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), Head("") + "CalculateDetailsDMIData done.");
}

TEST_F(CalculationLog, OtherLevelsLogNothing) {
  SetMask("23");  // all levels but 8
  CalculateDetailsDMIData(ImageOfLog());
  EXPECT_EQ(Content(), "");
}

TEST_F(CalculationLog, QsfpImageLogsNothing) {
  SetMask("8");
  CalculateDetailsDMIData(TestImage::Qsfp());
  EXPECT_EQ(Content(), "");
}

}  // namespace
