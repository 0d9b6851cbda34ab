// The measured values of an SFP module and its calibration constants, as numbers.
#pragma once

#include <cstdint>

#include "port/sfp/sfp_image.h"

// The measured quantities, in the order of the arrays below.
enum DmiQuantity : std::uint32_t { kTemperature, kVoltage, kTxBias, kTxPower, kRxPower };

// What valueArray holds of each quantity, in this order.
enum DmiEntry : std::uint32_t { kValue, kHighAlarm, kHighWarning, kLowWarning, kLowAlarm };

inline constexpr std::uint32_t kQuantities = 5;
inline constexpr std::uint32_t kEntriesPerQuantity = 5;

// Filled by CalculateDetailsDMIData; they keep their values until the next calculation. The program exports
// them for the device library, under these names. Units: degrees Celsius, volts, milliamperes, milliwatts,
// milliwatts.
#pragma GCC visibility push(default)
extern "C" {
extern float valueArray[25];
extern float slopeArray[5];    // of all quantities but receive power, whose entry stays 0
extern float offsetArray[5];   // likewise
extern float rxPowerArray[5];  // coefficients of receive power: Rx_PWR(0) to Rx_PWR(4)
}
#pragma GCC visibility pop

inline float& ValueEntry(DmiQuantity quantity, DmiEntry entry) {
  return valueArray[std::uint32_t{quantity} * kEntriesPerQuantity + std::uint32_t{entry}];
}

// Fills the arrays from the A2 half of an SFP image. A QSFP image leaves them alone.
//
// Some bytes are read in this program's own way and not as SFF-8472 says. That is meant: users compare with
// the numbers they know.
void CalculateDetailsDMIData(SfpImage image);
