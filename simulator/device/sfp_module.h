// Pluggable modules: what they are, in named values, and what their memory holds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "device/family_table.h"

namespace lab {

// 256 bytes of the A0 address, then 256 bytes of the A2 address.
using SfpMemory = std::array<std::uint8_t, 512>;

// The maker whose modules can be updated.
inline constexpr const char* kUpdatableVendor = "WTD";

// True for the identifiers that follow SFF-8636: QSFP, QSFP+, QSFP28, CXP2.
bool IsQsfpMemory(const SfpMemory& memory);

// Degrees Celsius, volts, milliamperes, milliwatts.
struct SfpMeasured {
  double temperature = 36.5;
  double voltage = 3.3;
  double bias = 7.0;
  double tx_power = 0.6;
  double rx_power = 0.5;
};

struct SfpThresholds {
  double high_alarm, low_alarm, high_warning, low_warning;
};

// A measured value is what the module stores times the slope plus the offset, which counts in the units of
// the stored number.
struct SfpLine {
  double slope = 1.0;
  std::int16_t offset = 0;
};

// The constants of an externally calibrated module.
struct SfpConstants {
  SfpLine temperature, voltage, bias, tx_power;
  std::array<float, 5> rx_power = {0, 1, 0, 0, 0};  // Rx_PWR(0) to Rx_PWR(4)
};

// A module in named values. Bit masks and codes are those of SFF-8472 and SFF-8024.
struct SfpValues {
  bool qsfp = false;
  std::string vendor = "SORVEX OPTICS";
  std::array<std::uint8_t, 3> oui = {0x00, 0x1e, 0x9c};
  std::optional<std::string> part;  // without it, told by form, speed and media
  std::string revision = "A1";
  std::string serial;
  std::string date = "20260114";
  std::uint8_t fc_speeds = 0;          // byte 10
  std::uint8_t fc_speeds_2 = 0;        // byte 62
  std::uint8_t ethernet_speeds = 0;    // byte 3
  std::uint8_t extended_ethernet = 0;  // byte 192 of a QSFP module
  std::uint8_t media = 0x04;           // 50 micrometres
  std::uint8_t transmitter = 0x40;     // shortwave
  std::uint8_t distance = 0x20;        // intermediate
  std::uint8_t connector = 0x07;       // LC
  std::uint16_t wavelength = 850;      // nanometres
  bool diagnostics = true;
  std::pair<std::uint8_t, std::uint8_t> firmware = {2, 7};
  SfpMeasured measured;
  SfpThresholds temperature = {75, -5, 70, 0};
  SfpThresholds voltage = {3.6, 3.0, 3.5, 3.1};
  SfpThresholds bias = {12.0, 2.0, 11.0, 3.0};
  SfpThresholds tx_power = {1.2, 0.2, 1.0, 0.25};
  SfpThresholds rx_power = {1.2, 0.05, 1.0, 0.1};
  std::optional<SfpConstants> external;  // without them the module is calibrated internally
};

// The module that a port of this family has where the host file says nothing. `adapter` is the adapter's
// place in the host, from 0.
SfpValues DefaultSfpValues(const Family& family, std::size_t adapter, std::uint32_t port);

// The memory of such a module, check bytes included.
SfpMemory ComposeSfpMemory(const SfpValues& values);

struct SfpModule {
  SfpMemory known{};  // as the port has read it
  SfpMemory now{};    // as the module would answer
  bool update_fails = false;
  // What calls have changed, for the state file.
  bool refreshed = false;
  bool updated = false;
};

// Where an SFP module of this simulation keeps the version of its firmware: major, minor.
inline constexpr std::size_t kSfpFirmwareVersion = 149;

// The maker's name, without the blanks around it.
std::string SfpVendor(const SfpMemory& memory);
std::string SfpPart(const SfpMemory& memory);

// Stores a version of the firmware in the module and in what the port knows of it.
void SetSfpFirmware(SfpModule& module, std::pair<std::uint8_t, std::uint8_t> version);

}  // namespace lab
