#include "port/sfp/dmi_calculation.h"

#include <cfloat>
#include <cstdio>
#include <cstdlib>

#include "port/sfp/field_text.h"
#include "runtime/debug_log.h"

// All arithmetic is in single precision, in the order in which it stands: this file must be compiled without
// contraction of products and sums.

extern "C" {
float valueArray[kQuantities * kEntriesPerQuantity];
float slopeArray[kQuantities];
float offsetArray[kQuantities];
float rxPowerArray[5];
}

namespace {

// Offsets of the calibration constants, four bytes each for receive power, from Rx_PWR(0) downwards.
constexpr std::uint16_t kRxPower0 = 328;
constexpr std::uint16_t kTxPowerSlope = 336;
constexpr std::uint16_t kTemperatureSlope = 340;
constexpr std::uint16_t kTemperatureOffset = 342;
constexpr std::uint16_t kVoltageSlope = 344;
constexpr std::uint16_t kVoltageOffset = 346;

// Offset of a quantity's thresholds, two bytes each: High Alarm, Low Alarm, High Warning, Low Warning.
constexpr std::uint16_t kTemperatureThresholds = 256;

struct Threshold {
  DmiEntry entry;
  std::uint16_t offset;  // behind the quantity's first threshold
  const char* log_name;
};

// The spelling of the alarms is deliberate: it is what people search debug logs for.
constexpr Threshold kThresholds[] = {
    {kHighAlarm, 0, "High Alaram"},
    {kLowAlarm, 2, "Low Alaram"},
    {kHighWarning, 4, "High Warning"},
    {kLowWarning, 6, "Low Warning"},
};

float VoltageOf(std::uint16_t n) {
  return static_cast<float>(n) * 100.0F * 0.000001F;
}

float BiasOf(std::uint16_t n) {
  const auto number = static_cast<float>(n);
  return (number + number) * 0.001F;
}

float PowerOf(std::uint16_t n) {
  return static_cast<float>(n) * 0.1F * 0.001F;
}

// A quantity whose value and thresholds are unsigned numbers of one scale.
struct ScaledQuantity {
  DmiQuantity quantity;
  const char* log_name;
  const char* log_unit;
  const char* most_significant;   // name of the value's first byte
  const char* least_significant;  // and of its second
  std::uint16_t thresholds;       // offset
  float (*scale)(std::uint16_t n);
};

constexpr ScaledQuantity kVoltageScale = {kVoltage, "Voltage", "V", "Vcc MSB", "Vcc LSB", 264, &VoltageOf};
constexpr ScaledQuantity kTxBiasScale = {kTxBias,       "Tx Bias", "mA",   "TX Bias MSB",
                                         "TX Bias LSB", 272,       &BiasOf};
constexpr ScaledQuantity kTxPowerScale = {kTxPower,       "Tx Power", "mW",    "TX Power MSB",
                                          "TX Power LSB", 280,        &PowerOf};
constexpr ScaledQuantity kRxPowerScale = {kRxPower,       "Rx Power", "mW",    "RX Power MSB",
                                          "RX Power LSB", 288,        &PowerOf};

float& Entry(DmiQuantity quantity, DmiEntry entry) {
  return valueArray[std::uint32_t{quantity} * kEntriesPerQuantity + std::uint32_t{entry}];
}

// The two bytes at `offset` as a big-endian number.
std::uint32_t HexField(SfpImage image, std::uint16_t offset) {
  return HexTextToInt(GetFieldText(image, offset, 2, FIELD_HEX2));
}

// Exchanges the two low bytes and leaves the rest.
std::uint32_t Swap(std::uint32_t number) {
  return (number & 0xFFFF0000U) | (number & 0xFFU) << 8 | (number >> 8 & 0xFFU);
}

std::uint32_t ReverseBytes(std::uint32_t number) {
  return Swap(number) << 16 | Swap(number >> 16);
}

// The number with its bits 8 to 15 as decimals: 256.1 for 0x0100.
float BuildSlope(std::uint32_t n) {
  DebugLogLevel(kDebugDetail, "Call buildSlope with intValue=%d", static_cast<int>(n));
  char text[32];
  std::snprintf(text, sizeof text, "%u.%u", n, n >> 8 & 0xFFU);
  return static_cast<float>(std::strtod(text, nullptr));
}

// The number that the bits of an IEEE 754 single-precision number stand for; infinity and what is no number
// give the largest number.
float DecodeIeee(std::uint32_t pattern) {
  constexpr std::uint32_t kHiddenBit = 1U << 23;
  const bool negative = (pattern >> 31) != 0;
  const auto exponent = static_cast<int>(pattern >> 23 & 0xFFU);
  std::uint32_t mantissa = pattern & (kHiddenBit - 1);
  if (exponent == 255) return negative ? -FLT_MAX : FLT_MAX;
  // 2 to the power of exponent - 150, exactly, and without the mathematics library, which no start of the
  // program shall have to map.
  double power = 0x1p-150;
  for (int i = 0; i < exponent; ++i) power += power;
  auto scale = static_cast<float>(power);
  if (exponent != 0) {
    mantissa |= kHiddenBit;
  } else {
    // Narrowed to single precision before it is doubled, the scale of an exponent of 0 is deliberately 0.
    scale += scale;
  }
  const float number = static_cast<float>(mantissa) * scale;
  return negative ? -number : number;
}

void SetCalibration(DmiQuantity quantity, const char* log_name, float slope, float offset) {
  slopeArray[quantity] = slope;
  offsetArray[quantity] = offset;
  DebugLogLevel(kDebugDetail, "%s Slope (slopeArray[%u]): %.03f", log_name, quantity,
                static_cast<double>(slope));
  DebugLogLevel(kDebugDetail, "%s Offset (offsetArray[%u]): %.03f", log_name, quantity,
                static_cast<double>(offset));
}

// High Alarm and High Warning of temperature. Deliberately the degrees are the low byte here and the fraction
// the high one.
float HighTemperature(SfpImage image, std::uint16_t offset) {
  const std::uint32_t swapped = Swap(HexField(image, offset));
  if ((swapped & 0x100U) == 0) return static_cast<float>(swapped);
  return static_cast<float>(swapped * 0.5) - 256.0F;
}

// Low Warning and Low Alarm: `swapped` is the field, as 32 bits, with its bytes exchanged.
float LowTemperature(std::int32_t swapped) {
  const auto number = static_cast<float>(swapped);
  const bool above_bit_7 = static_cast<std::uint32_t>(swapped) > 0xFF;  // true for every negative number too
  if (above_bit_7) return number - 512.0F;
  return (swapped & 0x80) != 0 ? number - 256.0F : number;
}

float LowTemperatureWarning(SfpImage image, std::uint16_t offset) {
  const std::uint32_t field = HexField(image, offset);
  DebugLogLevel(kDebugDetail, "Temp Low Warning(before swap): %.02f", static_cast<double>(field));
  const auto swapped = static_cast<std::int16_t>(Swap(field));
  DebugLogLevel(kDebugDetail, "Temp Low Warning(after swap): %.02f", static_cast<double>(swapped));
  return LowTemperature(swapped);
}

// Unlike the warning, the alarm is deliberately not sign-extended.
float LowTemperatureAlarm(SfpImage image, std::uint16_t offset) {
  return LowTemperature(static_cast<std::int32_t>(Swap(HexField(image, offset))));
}

void CalculateTemperature(SfpImage image) {
  // Deliberately unsigned: what is below zero reads as 128 and more.
  const std::uint8_t degrees = GetFieldValue(image, "Temperature MSB");
  const std::uint8_t fraction = GetFieldValue(image, "Temperature LSB");
  float& value = Entry(kTemperature, kValue);
  value = static_cast<float>(fraction) * 0.00390625F + static_cast<float>(degrees);
  DebugLogLevel(kDebugDetail, "Temperature (C) Value (valueArray[0][0]): %.02f", static_cast<double>(value));
  for (const Threshold& threshold : kThresholds) {
    const auto offset = static_cast<std::uint16_t>(kTemperatureThresholds + threshold.offset);
    float& entry = Entry(kTemperature, threshold.entry);
    switch (threshold.entry) {
      case kLowWarning:
        entry = LowTemperatureWarning(image, offset);
        break;
      case kLowAlarm:
        entry = LowTemperatureAlarm(image, offset);
        break;
      default:
        entry = HighTemperature(image, offset);
        break;
    }
    DebugLogLevel(kDebugDetail, "Temp %s: %.02f", threshold.log_name, static_cast<double>(entry));
  }
}

void CalculateScaled(SfpImage image, const ScaledQuantity& row) {
  const std::uint8_t high = GetFieldValue(image, row.most_significant);
  const std::uint8_t low = GetFieldValue(image, row.least_significant);
  float& value = Entry(row.quantity, kValue);
  value = row.scale(static_cast<std::uint16_t>(high << 8 | low));
  DebugLogLevel(kDebugDetail, "%s (%s) Value (valueArray[%u][0]): %.03f", row.log_name, row.log_unit,
                row.quantity, static_cast<double>(value));
  for (const Threshold& threshold : kThresholds) {
    const auto offset = static_cast<std::uint16_t>(row.thresholds + threshold.offset);
    float& entry = Entry(row.quantity, threshold.entry);
    entry = row.scale(static_cast<std::uint16_t>(HexField(image, offset)));
    DebugLogLevel(kDebugDetail, "%s %s: %.03f", row.log_name, threshold.log_name, static_cast<double>(entry));
  }
}

void CalculateRxPowerCoefficients(SfpImage image) {
  std::uint16_t offset = kRxPower0;
  for (float& coefficient : rxPowerArray) {
    coefficient = DecodeIeee(HexTextToInt(GetFieldText(image, offset, 4, FIELD_HEX4)));
    DebugLogLevel(kDebugDetail, "Rx_PWR at %u: %g", offset, static_cast<double>(coefficient));
    offset = static_cast<std::uint16_t>(offset - 4);
  }
}

}  // namespace

void CalculateDetailsDMIData(SfpImage image) {
  if (IsQsfp(image)) return;
  CalculateTemperature(image);
  SetCalibration(kTemperature, "Temperature", BuildSlope(Swap(HexField(image, kTemperatureSlope))),
                 static_cast<float>(Swap(HexField(image, kTemperatureOffset))));
  CalculateScaled(image, kVoltageScale);
  SetCalibration(kVoltage, "Voltage", BuildSlope(Swap(HexField(image, kVoltageSlope))),
                 static_cast<float>(static_cast<std::int16_t>(HexField(image, kVoltageOffset))));
  CalculateScaled(image, kTxBiasScale);
  // Deliberately only the last byte of each of the two fields.
  SetCalibration(kTxBias, "Tx Bias", BuildSlope(GetFieldValue(image, "Tx_I(Slope)")),
                 static_cast<float>(GetFieldValue(image, "Tx_I(Offset)")));
  CalculateScaled(image, kTxPowerScale);
  // Deliberately the slope's field again where the offset is asked for.
  SetCalibration(kTxPower, "Tx Power", BuildSlope(Swap(HexField(image, kTxPowerSlope))),
                 static_cast<float>(ReverseBytes(HexField(image, kTxPowerSlope))));
  CalculateScaled(image, kRxPowerScale);
  CalculateRxPowerCoefficients(image);
  DebugLogLevel(kDebugDetail, "CalculateDetailsDMIData done.");
}
