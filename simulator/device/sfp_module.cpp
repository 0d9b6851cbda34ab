#include "device/sfp_module.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numeric>

#include "base/text.h"
#include "framework/device_library/port_entry.h"

namespace lab {
namespace {

constexpr std::uint8_t kSfpIdentifier = 0x03;
constexpr std::uint8_t kQsfp28Identifier = 0x11;
constexpr std::size_t kA2 = 256;

// Places behind the page base, which SFP and QSFP modules share.
constexpr std::size_t kVendor = 20;
constexpr std::size_t kPart = 40;
constexpr std::size_t kNameBytes = 16;

constexpr std::uint8_t kSecondSpeedByteCounts = 0x02;

// How fast a module is, and what follows from that. SFF-8024 numbers encodings differently for QSFP modules.
struct SpeedClass {
  std::uint8_t fc_speeds;    // one of these bits of byte 10, or
  std::uint8_t fc_speeds_2;  // of byte 62
  std::uint8_t gbps;
  std::uint8_t encoding;
  std::uint8_t qsfp_encoding;
  std::uint8_t nominal_rate;   // 100 MBd; 255: byte 66, of a QSFP module byte 222, tells it
  std::uint8_t greatest_rate;  // 250 MBd
  std::uint8_t rate_identifier;
};

// From the fastest down.
constexpr SpeedClass kSpeedClasses[] = {
    {0x00, 0x02, 128, 0x08, 0x08, 0xff, 0xe8, 0x20}, {0x00, 0x01, 64, 0x08, 0x08, 0xff, 0x74, 0x10},
    {0x08, 0x00, 32, 0x06, 0x05, 0xff, 0x70, 0x0c},  {0x20, 0x00, 16, 0x06, 0x05, 0x8c, 0x00, 0x0a},
    {0x80, 0x00, 10, 0x06, 0x05, 0x69, 0x00, 0x00},  {0x40, 0x00, 8, 0x01, 0x01, 0x55, 0x00, 0x06},
    {0x10, 0x00, 4, 0x01, 0x01, 0x2b, 0x00, 0x01},   {0x04, 0x00, 2, 0x01, 0x01, 0x15, 0x00, 0x01},
    {0x01, 0x00, 1, 0x01, 0x01, 0x0b, 0x00, 0x00},
};
constexpr SpeedClass kEthernetClass = {0, 0, 10, 0x06, 0x05, 0x67, 0x00, 0x00};

const SpeedClass& FastestOf(const SfpValues& values) {
  for (const SpeedClass& row : kSpeedClasses) {
    if ((values.fc_speeds & row.fc_speeds) != 0 || (values.fc_speeds_2 & row.fc_speeds_2) != 0) return row;
  }
  return kEthernetClass;
}

// Bits of a port's supported speeds and the bits of the speed bytes 10 and 62.
struct PortSpeed {
  std::uint8_t supported;
  std::uint8_t fc_speeds;
  std::uint8_t fc_speeds_2;
};
constexpr PortSpeed kPortSpeeds[] = {{0x01, 0x01, 0}, {0x02, 0x04, 0}, {0x08, 0x10, 0},   {0x10, 0x40, 0},
                                     {0x20, 0x20, 0}, {0x40, 0x08, 0}, {0x80, 0x00, 0x01}};
constexpr std::uint8_t kTenGigabitEthernet = 0x10;

// Writes the fields of one module.
class Composer {
 public:
  explicit Composer(SfpMemory& memory, std::size_t base = 0) : memory_(memory), base_(base) {}

  void Byte(std::size_t offset, unsigned value) {
    memory_[base_ + offset] = static_cast<std::uint8_t>(value);
  }
  void Word(std::size_t offset, unsigned value) {
    Byte(offset, value >> 8);
    Byte(offset + 1, value);
  }
  void Bits32(std::size_t offset, std::uint32_t value) {
    Word(offset, value >> 16);
    Word(offset + 2, value & 0xffff);
  }
  // Filled up with blanks.
  void Text(std::size_t offset, std::size_t size, const std::string& text) {
    for (std::size_t i = 0; i < size; ++i)
      Byte(offset + i, i < text.size() ? static_cast<unsigned char>(text[i]) : ' ');
  }
  // The low byte of the sum of the bytes from `first` up to `place`, at `place`.
  void Sum(std::size_t first, std::size_t place) {
    const auto* const bytes = memory_.data() + base_;
    Byte(place, std::accumulate(bytes + first, bytes + place, 0u));
  }

 private:
  SfpMemory& memory_;
  std::size_t base_;
};

// A number in units of `unit`, as the two bytes that hold it.
unsigned Units(double value, double unit) {
  return static_cast<unsigned>(std::lround(value / unit)) & 0xffff;
}

constexpr double kTemperatureUnit = 1.0 / 256;
constexpr double kVoltageUnit = 0.0001;
constexpr double kBiasUnit = 0.002;
constexpr double kPowerUnit = 0.0001;

// One measured quantity of an SFP module: its value, its thresholds and where they stand in A2.
struct Quantity {
  double SfpMeasured::*value;
  SfpThresholds SfpValues::*thresholds;
  double unit;
  std::size_t thresholds_place;
  std::size_t value_place;
  std::size_t alarms_place;  // of its alarm flags; its warning flags stand four bytes on
  std::uint8_t high_flag;    // the low flag is the next lower bit
};

constexpr Quantity kQuantities[] = {
    {&SfpMeasured::temperature, &SfpValues::temperature, kTemperatureUnit, 0, 96, 112, 0x80},
    {&SfpMeasured::voltage, &SfpValues::voltage, kVoltageUnit, 8, 98, 112, 0x20},
    {&SfpMeasured::bias, &SfpValues::bias, kBiasUnit, 16, 100, 112, 0x08},
    {&SfpMeasured::tx_power, &SfpValues::tx_power, kPowerUnit, 24, 102, 112, 0x02},
    {&SfpMeasured::rx_power, &SfpValues::rx_power, kPowerUnit, 32, 104, 113, 0x80},
};
constexpr std::size_t kWarningsBehindAlarms = 4;
constexpr std::uint8_t kLossOfSignal = 0x02;

unsigned Flags(double value, double high, double low, std::uint8_t high_flag) {
  return (value > high ? high_flag : 0u) | (value < low ? high_flag >> 1 : 0u);
}

void ComposeMeasured(const SfpValues& values, Composer& a2) {
  unsigned alarms[2] = {};
  unsigned warnings[2] = {};
  for (const Quantity& row : kQuantities) {
    const double value = values.measured.*row.value;
    const SfpThresholds& limits = values.*row.thresholds;
    a2.Word(row.thresholds_place, Units(limits.high_alarm, row.unit));
    a2.Word(row.thresholds_place + 2, Units(limits.low_alarm, row.unit));
    a2.Word(row.thresholds_place + 4, Units(limits.high_warning, row.unit));
    a2.Word(row.thresholds_place + 6, Units(limits.low_warning, row.unit));
    a2.Word(row.value_place, Units(value, row.unit));
    const std::size_t byte = row.alarms_place - kQuantities[0].alarms_place;
    alarms[byte] |= Flags(value, limits.high_alarm, limits.low_alarm, row.high_flag);
    warnings[byte] |= Flags(value, limits.high_warning, limits.low_warning, row.high_flag);
  }
  for (std::size_t byte = 0; byte < 2; ++byte) {
    a2.Byte(kQuantities[0].alarms_place + byte, alarms[byte]);
    a2.Byte(kQuantities[0].alarms_place + kWarningsBehindAlarms + byte, warnings[byte]);
  }
  if (values.measured.rx_power < values.rx_power.low_alarm) a2.Byte(110, kLossOfSignal);
}

void ComposeLine(Composer& a2, std::size_t place, const SfpLine& line) {
  a2.Word(place, Units(line.slope, 1.0 / 256));
  a2.Word(place + 2, static_cast<std::uint16_t>(line.offset));
}

void ComposeConstants(const SfpConstants& constants, Composer& a2) {
  constexpr std::size_t kRxPower4 = 56;
  for (std::size_t i = 0; i < constants.rx_power.size(); ++i) {
    a2.Bits32(kRxPower4 + 4 * (4 - i), std::bit_cast<std::uint32_t>(constants.rx_power[i]));
  }
  ComposeLine(a2, 76, constants.bias);
  ComposeLine(a2, 80, constants.tx_power);
  ComposeLine(a2, 84, constants.temperature);
  ComposeLine(a2, 88, constants.voltage);
}

constexpr std::uint8_t kSingleMode = 0x01;
constexpr std::uint8_t kMultiMode = 0x0c;

// "SX-F64-SW": a module for 64 Gbps of Fibre Channel over multi-mode fibre.
std::string PartOf(const SfpValues& values) {
  const bool ethernet = values.fc_speeds == 0 && values.fc_speeds_2 == 0;
  char text[kNameBytes + 1];
  std::snprintf(text, sizeof text, "SX-%s%s%u-%s", values.qsfp ? "Q" : "", ethernet ? "E" : "F",
                unsigned{FastestOf(values).gbps}, (values.media & kSingleMode) != 0 ? "LW" : "SW");
  return text;
}

// What both kinds of module have at the same places behind the page base.
void ComposeIdentity(const SfpValues& values, Composer& page) {
  page.Byte(2, values.connector);
  page.Byte(3, values.ethernet_speeds);
  page.Byte(7, values.distance);
  page.Byte(8, values.transmitter);
  page.Byte(9, values.media);
  page.Byte(10, values.fc_speeds | (values.fc_speeds_2 != 0 ? kSecondSpeedByteCounts : 0));
  page.Text(kVendor, kNameBytes, values.vendor);
  for (std::size_t i = 0; i < values.oui.size(); ++i) page.Byte(37 + i, values.oui[i]);
  page.Text(kPart, kNameBytes, values.part ? *values.part : PartOf(values));
  page.Text(68, kNameBytes, values.serial);
  page.Text(84, 8, values.date.substr(2));
}

SfpMemory ComposeSfp(const SfpValues& values) {
  SfpMemory memory{};
  Composer a0(memory);
  const SpeedClass& fastest = FastestOf(values);
  a0.Byte(0, kSfpIdentifier);
  a0.Byte(1, 0x04);
  ComposeIdentity(values, a0);
  a0.Byte(11, fastest.encoding);
  a0.Byte(12, fastest.nominal_rate);
  a0.Byte(13, fastest.rate_identifier);
  if ((values.media & kSingleMode) != 0) {
    a0.Byte(14, 10);   // km
    a0.Byte(15, 100);  // 100 m
  }
  if ((values.media & kMultiMode) != 0) {
    a0.Byte(16, 2);   // 10 m of OM2
    a0.Byte(18, 10);  // of OM4
    a0.Byte(19, 7);   // of OM3
  }
  a0.Text(56, 4, values.revision);
  a0.Word(60, values.wavelength);
  a0.Byte(62, values.fc_speeds_2);
  if (fastest.gbps >= 64) a0.Byte(36, fastest.gbps == 64 ? 0x80 : 0x81);
  a0.Sum(0, 63);
  a0.Byte(65, 0x1a);  // loss of signal, transmit fault, transmit disable
  a0.Byte(66, fastest.greatest_rate);
  if (values.diagnostics) {
    a0.Byte(92, 0x40 | (values.external ? 0x10 : 0x20) | 0x08);
    a0.Byte(93, 0xf0);
    a0.Byte(94, 0x08);
  }
  a0.Sum(64, 95);
  a0.Byte(kSfpFirmwareVersion, values.firmware.first);
  a0.Byte(kSfpFirmwareVersion + 1, values.firmware.second);
  if (values.diagnostics) {
    Composer a2(memory, kA2);
    ComposeMeasured(values, a2);
    if (values.external) ComposeConstants(*values.external, a2);
    a2.Sum(0, 95);
  }
  return memory;
}

SfpMemory ComposeQsfp(const SfpValues& values) {
  constexpr std::size_t kUpperPage = 128;
  SfpMemory memory{};
  Composer lower(memory);
  lower.Byte(0, kQsfp28Identifier);
  lower.Byte(1, 0x08);  // SFF-8636 revision 2.8
  lower.Word(22, Units(values.measured.temperature, kTemperatureUnit));
  lower.Word(26, Units(values.measured.voltage, kVoltageUnit));
  for (std::size_t lane = 0; lane < 4; ++lane) {
    lower.Word(34 + 2 * lane, Units(values.measured.rx_power, kPowerUnit));
    lower.Word(42 + 2 * lane, Units(values.measured.bias, kBiasUnit));
    lower.Word(50 + 2 * lane, Units(values.measured.tx_power, kPowerUnit));
  }
  Composer page(memory, kUpperPage);
  const SpeedClass& fastest = FastestOf(values);
  page.Byte(0, kQsfp28Identifier);
  page.Byte(1, 0x8c);  // power class 3, clock recovery both ways
  ComposeIdentity(values, page);
  page.Byte(11, fastest.qsfp_encoding);
  page.Byte(12, fastest.nominal_rate);
  if ((values.media & kSingleMode) != 0) page.Byte(14, 10);  // km
  if ((values.media & kMultiMode) != 0) page.Byte(15, 35);   // 2 m of OM3
  page.Text(56, 2, values.revision);
  page.Word(58, static_cast<unsigned>(values.wavelength) * 20);
  page.Sum(0, 63);
  page.Byte(64, values.extended_ethernet);
  page.Byte(65, 0x07);
  page.Byte(66, 0xff);
  page.Byte(67, 0x1e);
  page.Byte(92, 0x0c);  // power is measured, average
  page.Byte(93, 0x10);
  page.Byte(94, fastest.greatest_rate);
  page.Sum(64, 95);
  return memory;
}

std::string NameAt(const SfpMemory& memory, std::size_t offset) {
  const std::size_t base = IsQsfpMemory(memory) ? 128 : 0;
  const auto* const text = reinterpret_cast<const char*>(memory.data()) + base + offset;
  return std::string(Trimmed({text, strnlen(text, kNameBytes)}));
}

}  // namespace

bool IsQsfpMemory(const SfpMemory& memory) {
  return memory[0] == 0x0c || memory[0] == 0x0d || memory[0] == 0x11 || memory[0] == 0x12;
}

SfpValues DefaultSfpValues(const Family& family, std::size_t adapter, std::uint32_t port) {
  SfpValues values;
  for (const PortSpeed& row : kPortSpeeds) {
    if ((family.supported_speeds & row.supported) == 0) continue;
    values.fc_speeds |= row.fc_speeds;
    values.fc_speeds_2 |= row.fc_speeds_2;
  }
  if ((family.driver_flags & kSfpFirmwareUpdate) != 0) values.vendor = kUpdatableVendor;
  if (family.fcoe) {
    values.ethernet_speeds = kTenGigabitEthernet;
    values.fc_speeds = values.media = values.transmitter = values.distance = 0;
  }
  char text[kNameBytes + 1];
  std::snprintf(text, sizeof text, "SX%03zu%03u", (adapter + 1) % 1000, port % 1000);
  values.serial = text;
  return values;
}

SfpMemory ComposeSfpMemory(const SfpValues& values) {
  return values.qsfp ? ComposeQsfp(values) : ComposeSfp(values);
}

std::string SfpVendor(const SfpMemory& memory) {
  return NameAt(memory, kVendor);
}

std::string SfpPart(const SfpMemory& memory) {
  return NameAt(memory, kPart);
}

void SetSfpFirmware(SfpModule& module, std::pair<std::uint8_t, std::uint8_t> version) {
  for (SfpMemory* memory : {&module.known, &module.now}) {
    (*memory)[kSfpFirmwareVersion] = version.first;
    (*memory)[kSfpFirmwareVersion + 1] = version.second;
  }
  module.updated = true;
}

}  // namespace lab
