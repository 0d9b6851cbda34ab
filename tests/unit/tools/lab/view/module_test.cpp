#include "tools/lab/view/module.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "unit/tools/lab/recorded_host.h"

namespace {

using view::Limit;
using view::Module;
using view::ReadModule;

Limit WorstLimit(const Module& module) {
  Limit worst = Limit::kWithin;
  for (const view::Measurement& measurement : module.measured) worst = std::max(worst, measurement.limit);
  return worst;
}

void PutFloat(recording::SfpImage& image, std::size_t place, float number) {
  const auto bits = std::bit_cast<std::uint32_t>(number);
  PutWord(image, place, bits >> 16);
  PutWord(image, place + 2, bits & 0xffff);
}

TEST(Module, IsAbsentInAnEmptyCage) {
  EXPECT_FALSE(ReadModule(recording::SfpImage{}).present);
}

TEST(Module, HasItsNames) {
  const Module module = ReadModule(GoodModule());
  EXPECT_TRUE(module.present);
  EXPECT_FALSE(module.qsfp);
  EXPECT_EQ(view::ModuleName(module), "LUMEN CO LC-32-SW");
  EXPECT_EQ(module.serial, "LC0001          ");
  EXPECT_EQ(module.revision, "A1  ");
  EXPECT_EQ(module.date, "260114  ");
}

TEST(Module, WithoutANameSaysSo) {
  recording::SfpImage image = GoodModule();
  PutText(image, 20, 16, "");
  PutText(image, 40, 16, "");
  EXPECT_EQ(view::ModuleName(ReadModule(image)), "a module without a name");
}

TEST(Module, MeasuresInItsUnits) {
  const Module module = ReadModule(GoodModule());
  ASSERT_TRUE(module.measures);
  EXPECT_DOUBLE_EQ(module.measured[view::kTemperature].value, 36.5);
  EXPECT_NEAR(module.measured[view::kVoltage].value, 3.3, 1e-9);
  EXPECT_NEAR(module.measured[view::kBias].value, 7.0, 1e-9);
  EXPECT_NEAR(module.measured[view::kTxPower].value, 0.6, 1e-9);
  EXPECT_NEAR(module.measured[view::kRxPower].value, 0.5, 1e-9);
  EXPECT_EQ(WorstLimit(module), Limit::kWithin);
}

TEST(Module, WithoutDiagnosticsMeasuresNothing) {
  recording::SfpImage image = GoodModule();
  image.bytes[92] = 0;
  EXPECT_FALSE(ReadModule(image).measures);
}

struct TemperatureCase {
  unsigned stored;
  Limit limit;
  const char* text;
};

// Limits of 75 and -5 (alarm), 70 and 0 (warning); a value at a limit is within it.
constexpr TemperatureCase kTemperatures[] = {
    {70 * 256, Limit::kWithin, ""},
    {70 * 256 + 1, Limit::kWarning, "temperature is 70.0 C, above its warning limit of 70.0 C"},
    {72 * 256, Limit::kWarning, "temperature is 72.0 C, above its warning limit of 70.0 C"},
    {75 * 256, Limit::kWarning, "temperature is 75.0 C, above its warning limit of 70.0 C"},
    {80 * 256, Limit::kAlarm, "temperature is 80.0 C, above its alarm limit of 75.0 C"},
    {0, Limit::kWithin, ""},
    {0x10000 - 256, Limit::kWarning, "temperature is -1.0 C, below its warning limit of 0.0 C"},
    {0x10000 - 6 * 256, Limit::kAlarm, "temperature is -6.0 C, below its alarm limit of -5.0 C"},
};

TEST(Module, IsJudgedByItsLimits) {
  for (const TemperatureCase& row : kTemperatures) {
    recording::SfpImage image = GoodModule();
    PutWord(image, kA2 + 96, row.stored);
    const auto measured = ReadModule(image).measured[view::kTemperature];
    EXPECT_EQ(measured.limit, row.limit) << row.stored;
    EXPECT_EQ(view::LimitText(view::kTemperature, measured), row.text) << row.stored;
  }
}

TEST(Module, WithoutLimitsIsNotJudged) {
  recording::SfpImage image = GoodModule();
  std::fill_n(image.bytes + kA2, 40, std::uint8_t{0});
  EXPECT_EQ(WorstLimit(ReadModule(image)), Limit::kWithin);
}

// SFF-8472: slope in 1/256, offset in units of the stored value; receive power is a polynomial.
TEST(Module, IsCalibratedByItsConstants) {
  recording::SfpImage image = GoodModule();
  image.bytes[92] = 0x50;
  PutWord(image, kA2 + 84, 0x0180);             // temperature: times 1.5
  PutWord(image, kA2 + 86, 0x10000 - 2 * 256);  // less 2 degrees
  PutWord(image, kA2 + 88, 0x0080);             // voltage: times 0.5
  PutWord(image, kA2 + 90, 1000);               // and 0.1 V
  PutWord(image, kA2 + 76, 0x0200);             // bias: times 2
  PutWord(image, kA2 + 80, 0x0100);             // transmit power: times 1
  PutWord(image, kA2 + 82, 100);                // and 0.01 mW
  PutFloat(image, kA2 + 56, 0);                 // Rx_PWR(4)
  PutFloat(image, kA2 + 60, 0);
  PutFloat(image, kA2 + 64, 0.0001F);  // Rx_PWR(2)
  PutFloat(image, kA2 + 68, 2);        // Rx_PWR(1)
  PutFloat(image, kA2 + 72, 10);       // Rx_PWR(0)
  const Module module = ReadModule(image);
  EXPECT_NEAR(module.measured[view::kTemperature].value, 36.5 * 1.5 - 2, 1e-9);
  EXPECT_NEAR(module.measured[view::kVoltage].value, 1.75, 1e-9);
  EXPECT_NEAR(module.measured[view::kBias].value, 14.0, 1e-9);
  EXPECT_NEAR(module.measured[view::kTxPower].value, 0.61, 1e-9);
  // 0.0001 * 5000 * 5000 + 2 * 5000 + 10 = 12510 units of 0.1 microwatts
  EXPECT_NEAR(module.measured[view::kRxPower].value, 1.251, 1e-6);
  // The limits are calibrated too: 75 * 1.5 - 2 degrees.
  PutWord(image, kA2 + 96, 80 * 256);
  const auto hot = ReadModule(image).measured[view::kTemperature];
  EXPECT_EQ(view::LimitText(view::kTemperature, hot),
            "temperature is 118.0 C, above its alarm limit of 110.5 C");
}

TEST(Module, WithConstantsThatAreNoNumbersIsNotJudged) {
  recording::SfpImage image = GoodModule();
  image.bytes[92] = 0x50;
  for (std::size_t place = 56; place < 76; place += 4) {
    PutFloat(image, kA2 + place, std::numeric_limits<float>::quiet_NaN());
  }
  const auto rx = ReadModule(image).measured[view::kRxPower];
  EXPECT_EQ(rx.limit, Limit::kWithin);
  EXPECT_EQ(view::ValueText(view::kRxPower, rx.value), "no number");
}

// SFF-8636: identity in the upper page, values and flags in the lower one, no limits in the image.
TEST(Module, OfTheQsfpKindIsJudgedByItsFlags) {
  recording::SfpImage image{};
  image.bytes[0] = 0x11;
  PutText(image, 128 + 20, 16, "LUMEN CO");
  PutText(image, 128 + 40, 16, "LC-Q");
  PutWord(image, 22, 40 * 256);
  PutWord(image, 26, 33000);
  PutWord(image, 34, 5000);  // receive power of lane 1
  PutWord(image, 40, 100);   // and of lane 4
  image.bytes[10] = 0x04;    // lane 4: low alarm
  image.bytes[6] = 0x20;     // temperature: high warning
  const Module module = ReadModule(image);
  EXPECT_TRUE(module.qsfp);
  EXPECT_EQ(view::ModuleName(module), "LUMEN CO LC-Q");
  EXPECT_EQ(view::LimitText(view::kTemperature, module.measured[view::kTemperature]),
            "temperature is 40.0 C, above its warning limit");
  EXPECT_EQ(view::LimitText(view::kRxPower, module.measured[view::kRxPower]),
            "rx power is 0.0100 mW, below its alarm limit");
  EXPECT_EQ(module.measured[view::kVoltage].limit, Limit::kWithin);
  EXPECT_EQ(WorstLimit(module), Limit::kAlarm);
}

// SFF-8636, byte 6: bits 7 to 4 are high alarm, low alarm, high warning and low warning of the temperature.
TEST(Module, OfTheQsfpKindHasAFlagForEachLimit) {
  const std::pair<std::uint8_t, const char*> flags[] = {
      {0x80, "temperature is 40.0 C, above its alarm limit"},
      {0x40, "temperature is 40.0 C, below its alarm limit"},
      {0x20, "temperature is 40.0 C, above its warning limit"},
      {0x10, "temperature is 40.0 C, below its warning limit"},
      {0x50, "temperature is 40.0 C, below its alarm limit"},
  };
  recording::SfpImage image{};
  image.bytes[0] = 0x11;
  PutWord(image, 22, 40 * 256);
  for (const auto& [byte, text] : flags) {
    image.bytes[6] = byte;
    EXPECT_EQ(view::LimitText(view::kTemperature, ReadModule(image).measured[view::kTemperature]), text);
  }
}

struct MoveCase {
  const char* name;
  view::Quantity quantity;
  double before, after;
  bool noticeable;
};

constexpr MoveCase kMoves[] = {
    {"2.9 degrees", view::kTemperature, 36, 38.9, false},
    {"3 degrees", view::kTemperature, 36, 39, true},
    {"3 degrees less", view::kTemperature, 39, 36, true},
    {"0.05 V", view::kVoltage, 3.3, 3.35, false},
    {"0.2 V", view::kVoltage, 3.3, 3.1, true},
    {"a tenth more light", view::kRxPower, 0.5, 0.55, false},
    {"a quarter more light", view::kRxPower, 0.4, 0.5, true},
    {"half the light", view::kTxPower, 0.6, 0.3, true},
    {"noise of a dark receiver", view::kRxPower, 0, 0.0003, false},
    {"from dark to light", view::kRxPower, 0, 0.5, true},
};

TEST(Measurement, MovesNoticeably) {
  for (const MoveCase& row : kMoves) {
    EXPECT_EQ(view::IsNoticeable(row.quantity, {.value = row.before}, {.value = row.after}), row.noticeable)
        << row.name;
  }
}

TEST(Measurement, ThatCrossesALimitIsNoticeable) {
  const view::Measurement within = {.value = 70};
  const view::Measurement above = {.value = 70.1, .limit = Limit::kWarning, .above = true};
  EXPECT_TRUE(view::IsNoticeable(view::kTemperature, within, above));
  EXPECT_TRUE(view::IsNoticeable(view::kTemperature, above, within));
}

TEST(Measurement, ThatIsNoNumberTwiceHasNotMoved) {
  const view::Measurement none = {.value = std::nan("")};
  EXPECT_FALSE(view::IsNoticeable(view::kRxPower, none, none));
  EXPECT_TRUE(view::IsNoticeable(view::kTemperature, {.value = 36}, none));
}

}  // namespace
