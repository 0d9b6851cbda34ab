#include "port/sfp/dmi_calculation.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <string_view>

#include "framework/inline_text.h"
#include "framework/table.h"
#include "port/sfp/sfp_field_table.h"
#include "runtime/debug_log.h"

// All arithmetic is in single precision, in the order in which it is written: this file must be compiled
// without contraction of products and sums.

extern "C" {
float valueArray[kQuantities * kEntriesPerQuantity];
float slopeArray[kQuantities];
float offsetArray[kQuantities];
float rxPowerArray[5];
}

namespace {

// Fields of one, two and four bytes.
using Field8 = SfpNumber<std::uint8_t>;
using Field16 = SfpNumber<std::uint16_t>;
using Field32 = SfpNumber<std::uint32_t>;

consteval Field8 Named8(std::string_view name, std::string_view suffix) {
  return NumberNamed<std::uint8_t>(SfpFieldTable, name, suffix);
}

consteval Field16 Named16(std::string_view name, std::string_view suffix = {}) {
  return NumberNamed<std::uint16_t>(SfpFieldTable, name, suffix);
}

struct QuantityFields {
  DmiQuantity quantity;
  const char* log_name;
  Field8 value_msb;
  Field8 value_lsb;
  Field16 high_alarm;
  Field16 high_warning;
  Field16 low_warning;
  Field16 low_alarm;
};

// `value` and `threshold` are how the names of the quantity's fields begin.
consteval QuantityFields FieldsNamed(DmiQuantity quantity, const char* log_name, std::string_view value,
                                     std::string_view threshold) {
  return {.quantity = quantity,
          .log_name = log_name,
          .value_msb = Named8(value, " MSB"),
          .value_lsb = Named8(value, " LSB"),
          .high_alarm = Named16(threshold, " High Alarm"),
          .high_warning = Named16(threshold, " High Warning"),
          .low_warning = Named16(threshold, " Low Warning"),
          .low_alarm = Named16(threshold, " Low Alarm")};
}

constexpr QuantityFields kTemperatureFields = FieldsNamed(kTemperature, "Temperature", "Temperature", "Temp");
constexpr QuantityFields kVoltageFields = FieldsNamed(kVoltage, "Voltage", "Vcc", "Voltage");
constexpr QuantityFields kTxBiasFields = FieldsNamed(kTxBias, "Tx Bias", "TX Bias", "Bias");
constexpr QuantityFields kTxPowerFields = FieldsNamed(kTxPower, "Tx Power", "TX Power", "TX Signal Power");
constexpr QuantityFields kRxPowerFields = FieldsNamed(kRxPower, "Rx Power", "RX Power", "RX Signal Power");

constexpr Field16 kTemperatureSlope = Named16("T(Slope)");
constexpr Field16 kTemperatureOffset = Named16("T(Offset)");
constexpr Field16 kVoltageSlope = Named16("V(Slope)");
constexpr Field16 kVoltageOffset = Named16("V(Offset)");
constexpr Field16 kTxBiasSlope = Named16("Tx_I(Slope)");
constexpr Field16 kTxBiasOffset = Named16("Tx_I(Offset)");
constexpr Field16 kTxPowerSlope = Named16("Tx_PWR(Slope)");

struct Coefficient {
  float& number;
  Field32 field;
  const char* name;
};

consteval Coefficient CoefficientNamed(const char* name, float& number) {
  return {number, NumberNamed<std::uint32_t>(SfpFieldTable, name), name};
}

constexpr Coefficient kRxPowerCoefficients[] = {
    CoefficientNamed("Rx_PWR(0)", rxPowerArray[0]), CoefficientNamed("Rx_PWR(1)", rxPowerArray[1]),
    CoefficientNamed("Rx_PWR(2)", rxPowerArray[2]), CoefficientNamed("Rx_PWR(3)", rxPowerArray[3]),
    CoefficientNamed("Rx_PWR(4)", rxPowerArray[4]),
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

std::uint16_t Swap(std::uint16_t number) {
  return static_cast<std::uint16_t>(number << 8 | number >> 8);
}

std::uint32_t ReverseBytes(std::uint32_t number) {
  const std::uint32_t low = Swap(static_cast<std::uint16_t>(number));
  return low << 16 | Swap(static_cast<std::uint16_t>(number >> 16));
}

std::uint8_t LastByte(std::uint16_t number) {
  return static_cast<std::uint8_t>(number);
}

// The number with its high byte as decimals: 256.1 for 0x0100 and 2560.1 for 0x0A00, where they are "10".
float BuildSlope(std::uint16_t n) {
  DebugLogLevel(kDebugDetail, "Call buildSlope with intValue=%d", n);
  const std::uint32_t decimals = n >> 8;
  std::uint32_t unit = 10;
  while (unit <= decimals) unit *= 10;
  // Both numbers are exact, so that the quotient is what the decimal text of the slope reads as.
  return static_cast<float>(static_cast<double>(n * unit + decimals) / unit);
}

// A coefficient, from the bits of an IEEE 754 single-precision number.
float DecodeIeee(std::uint32_t bits) {
  const auto number = std::bit_cast<float>(bits);
  const float sign = std::signbit(number) ? -1.0F : 1.0F;
  if (!std::isfinite(number)) return sign * FLT_MAX;  // what is no number too
  // Subnormal numbers read as 0, which is meant.
  return std::isnormal(number) ? number : sign * 0.0F;
}

// High Alarm and High Warning of temperature. Degrees are the low byte and the fraction the high one, which
// is meant.
float HighTemperature(std::uint16_t field) {
  const std::uint16_t swapped = Swap(field);
  if ((swapped & 0x100U) == 0) return swapped;
  return static_cast<float>(swapped * 0.5) - 256.0F;
}

// Low Warning and Low Alarm: `swapped` is the field, as 32 bits, with its bytes exchanged.
float LowTemperature(std::int32_t swapped) {
  const auto number = static_cast<float>(swapped);
  const bool above_bit_7 = static_cast<std::uint32_t>(swapped) > 0xFF;  // of negative numbers too
  if (above_bit_7) return number - 512.0F;
  return (swapped & 0x80) != 0 ? number - 256.0F : number;
}

float LowTemperatureWarning(std::uint16_t field) {
  DebugLogLevel(kDebugDetail, "Temp Low Warning(before swap): %.02f", static_cast<double>(field));
  const auto swapped = static_cast<std::int16_t>(Swap(field));
  DebugLogLevel(kDebugDetail, "Temp Low Warning(after swap): %.02f", static_cast<double>(swapped));
  return LowTemperature(swapped);
}

// Unlike the warning, the alarm is not sign-extended, which is meant.
float LowTemperatureAlarm(std::uint16_t field) {
  return LowTemperature(Swap(field));
}

struct Threshold {
  DmiEntry entry;
  InlineText<12> log_name;
  Field16 QuantityFields::*field;
  float (*temperature)(std::uint16_t field);
};

// In the order of the calculation. The spelling of the alarms is meant: people search debug logs for it.
constexpr Threshold kThresholds[] = {
    {kHighAlarm, "High Alaram", &QuantityFields::high_alarm, &HighTemperature},
    {kHighWarning, "High Warning", &QuantityFields::high_warning, &HighTemperature},
    {kLowWarning, "Low Warning", &QuantityFields::low_warning, &LowTemperatureWarning},
    {kLowAlarm, "Low Alaram", &QuantityFields::low_alarm, &LowTemperatureAlarm},
};

void CalculateTemperature(SfpImage image) {
  // Unsigned, which is meant: below zero degrees it reads as 128 and more.
  const std::uint8_t degrees = image.Read(kTemperatureFields.value_msb);
  const std::uint8_t fraction = image.Read(kTemperatureFields.value_lsb);
  float& value = ValueEntry(kTemperature, kValue);
  value = static_cast<float>(fraction) * 0.00390625F + static_cast<float>(degrees);
  DebugLogLevel(kDebugDetail, "Temperature (C) Value (valueArray[0][0]): %.02f", static_cast<double>(value));
  for (const Threshold& threshold : TableOf<kThresholds>()) {
    float& entry = ValueEntry(kTemperature, threshold.entry);
    entry = threshold.temperature(image.Read(kTemperatureFields.*threshold.field));
    DebugLogLevel(kDebugDetail, "Temp %s: %.02f", threshold.log_name.CString(), static_cast<double>(entry));
  }
}

// A quantity whose value and thresholds are unsigned numbers of one scale.
void CalculateScaled(SfpImage image, const QuantityFields& fields, const char* unit,
                     float (*scale)(std::uint16_t n)) {
  const std::uint8_t high = image.Read(fields.value_msb);
  const std::uint8_t low = image.Read(fields.value_lsb);
  float& value = ValueEntry(fields.quantity, kValue);
  value = scale(static_cast<std::uint16_t>(high << 8 | low));
  DebugLogLevel(kDebugDetail, "%s (%s) Value (valueArray[%u][0]): %.03f", fields.log_name, unit,
                fields.quantity, static_cast<double>(value));
  for (const Threshold& threshold : TableOf<kThresholds>()) {
    float& entry = ValueEntry(fields.quantity, threshold.entry);
    entry = scale(image.Read(fields.*threshold.field));
    DebugLogLevel(kDebugDetail, "%s %s: %.03f", fields.log_name, threshold.log_name.CString(),
                  static_cast<double>(entry));
  }
}

void SetCalibration(const QuantityFields& fields, float slope, float offset) {
  slopeArray[fields.quantity] = slope;
  offsetArray[fields.quantity] = offset;
  DebugLogLevel(kDebugDetail, "%s Slope (slopeArray[%u]): %.03f", fields.log_name, fields.quantity,
                static_cast<double>(slope));
  DebugLogLevel(kDebugDetail, "%s Offset (offsetArray[%u]): %.03f", fields.log_name, fields.quantity,
                static_cast<double>(offset));
}

void CalculateRxPowerCoefficients(SfpImage image) {
  for (const Coefficient& coefficient : TableOf<kRxPowerCoefficients>()) {
    coefficient.number = DecodeIeee(image.Read(coefficient.field));
    DebugLogLevel(kDebugDetail, "%s: %g", coefficient.name, static_cast<double>(coefficient.number));
  }
}

}  // namespace

void CalculateDetailsDMIData(SfpImage image) {
  if (IsQsfp(image)) return;
  CalculateTemperature(image);
  SetCalibration(kTemperatureFields, BuildSlope(Swap(image.Read(kTemperatureSlope))),
                 Swap(image.Read(kTemperatureOffset)));
  CalculateScaled(image, kVoltageFields, "V", &VoltageOf);
  SetCalibration(kVoltageFields, BuildSlope(Swap(image.Read(kVoltageSlope))),
                 static_cast<std::int16_t>(image.Read(kVoltageOffset)));
  CalculateScaled(image, kTxBiasFields, "mA", &BiasOf);
  // Only the last byte of each of the two fields, which is meant.
  SetCalibration(kTxBiasFields, BuildSlope(LastByte(image.Read(kTxBiasSlope))),
                 LastByte(image.Read(kTxBiasOffset)));
  CalculateScaled(image, kTxPowerFields, "mW", &PowerOf);
  // The offset is read from the slope's field too, as four bytes, which is meant.
  SetCalibration(kTxPowerFields, BuildSlope(Swap(image.Read(kTxPowerSlope))),
                 static_cast<float>(ReverseBytes(image.Read(kTxPowerSlope))));
  CalculateScaled(image, kRxPowerFields, "mW", &PowerOf);
  CalculateRxPowerCoefficients(image);
  DebugLogLevel(kDebugDetail, "CalculateDetailsDMIData done.");
}
