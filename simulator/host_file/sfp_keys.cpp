#include "host_file/sfp_keys.h"

#include "base/text.h"
#include "images/sfp_files.h"

namespace lab {
namespace {

constexpr NamedNumber kForms[] = {{"sfp", 0}, {"qsfp", 1}};

// Speeds in Gbps: bits of byte 10, and above them those of byte 62.
constexpr NamedNumber kFcSpeeds[] = {{"1", 0x01},  {"2", 0x04},  {"4", 0x10},   {"8", 0x40},   {"10", 0x80},
                                     {"16", 0x20}, {"32", 0x08}, {"64", 0x100}, {"128", 0x200}};
constexpr std::span<const NamedNumber> kQsfpFcSpeeds = std::span(kFcSpeeds).first(7);

constexpr NamedNumber kSfpEthernetSpeeds[] = {{"10", 0x10}};
// Bits of byte 131; the highest refers to byte 192 for the speed.
constexpr NamedNumber kQsfpEthernetSpeeds[] = {{"10", 0x10}, {"40", 0x04}, {"100", 0x80}};
constexpr std::uint8_t kExtendedEthernet = 0x80;
constexpr std::uint8_t kHundredGigabit = 0x02;

constexpr NamedNumber kMedia[] = {{"single-mode", 0x01}, {"multi-mode-50", 0x04}, {"multi-mode-62.5", 0x08},
                                  {"video-coax", 0x10},  {"coax", 0x20},          {"twisted-pair", 0x40},
                                  {"twin-axial", 0x80}};
constexpr NamedNumber kTransmitters[] = {{"copper-base-t", 0x02}, {"copper-passive", 0x04},
                                         {"copper-active", 0x08}, {"longwave", 0x10},
                                         {"shortwave-ofc", 0x20}, {"shortwave", 0x40}};
constexpr NamedNumber kDistances[] = {
    {"short", 0x40}, {"intermediate", 0x20}, {"medium", 0x08}, {"long", 0x10}, {"very-long", 0x80}};
constexpr NamedNumber kConnectors[] = {{"none", 0x23},           {"sc", 0x01},  {"lc", 0x07}, {"mpo", 0x0c},
                                       {"copper-pigtail", 0x21}, {"rj45", 0x22}};

std::uint8_t ByteMask(const Value& list, std::span<const NamedNumber> bits) {
  return static_cast<std::uint8_t>(list.Mask(bits));
}

// Limits of what the fields hold.
constexpr double kLowestTemperature = -128;
constexpr double kHighestTemperature = 127.99;
constexpr double kHighestVoltage = 6.5535;
constexpr double kHighestBias = 131.07;
constexpr double kHighestPower = 6.5535;

constexpr KeyRow<SfpMeasured> kMeasuredKeys[] = {
    {"temperature",
     [](const Value& value, SfpMeasured& into) {
       into.temperature = value.Decimal(kLowestTemperature, kHighestTemperature);
     }},
    {"voltage",
     [](const Value& value, SfpMeasured& into) { into.voltage = value.Decimal(0, kHighestVoltage); }},
    {"bias", [](const Value& value, SfpMeasured& into) { into.bias = value.Decimal(0, kHighestBias); }},
    {"tx-power",
     [](const Value& value, SfpMeasured& into) { into.tx_power = value.Decimal(0, kHighestPower); }},
    {"rx-power",
     [](const Value& value, SfpMeasured& into) { into.rx_power = value.Decimal(0, kHighestPower); }},
};

// The thresholds of one quantity, between two bounds.
struct Limits {
  SfpThresholds& thresholds;
  double low;
  double high;
};

constexpr KeyRow<Limits> kThresholdKeys[] = {
    {"high-alarm", [](const Value& value,
                      Limits& into) { into.thresholds.high_alarm = value.Decimal(into.low, into.high); }},
    {"low-alarm", [](const Value& value,
                     Limits& into) { into.thresholds.low_alarm = value.Decimal(into.low, into.high); }},
    {"high-warning", [](const Value& value,
                        Limits& into) { into.thresholds.high_warning = value.Decimal(into.low, into.high); }},
    {"low-warning", [](const Value& value,
                       Limits& into) { into.thresholds.low_warning = value.Decimal(into.low, into.high); }},
};

void ReadThresholds(const Value& map, SfpThresholds& into, double low, double high) {
  Limits limits{into, low, high};
  ReadMap(map, kThresholdKeys, limits);
}

constexpr KeyRow<SfpValues> kAllThresholdsKeys[] = {
    {"temperature",
     [](const Value& value, SfpValues& into) {
       ReadThresholds(value, into.temperature, kLowestTemperature, kHighestTemperature);
     }},
    {"voltage",
     [](const Value& value, SfpValues& into) { ReadThresholds(value, into.voltage, 0, kHighestVoltage); }},
    {"bias", [](const Value& value, SfpValues& into) { ReadThresholds(value, into.bias, 0, kHighestBias); }},
    {"tx-power",
     [](const Value& value, SfpValues& into) { ReadThresholds(value, into.tx_power, 0, kHighestPower); }},
    {"rx-power",
     [](const Value& value, SfpValues& into) { ReadThresholds(value, into.rx_power, 0, kHighestPower); }},
};

constexpr KeyRow<SfpLine> kLineKeys[] = {
    {"slope", [](const Value& value, SfpLine& into) { into.slope = value.Decimal(0, 255.99); }},
    {"offset", [](const Value& value, SfpLine& into) { into.offset = value.SignedWord(); }},
};

constexpr KeyRow<SfpConstants> kConstantKeys[] = {
    {"temperature",
     [](const Value& value, SfpConstants& into) { ReadMap(value, kLineKeys, into.temperature); }},
    {"voltage", [](const Value& value, SfpConstants& into) { ReadMap(value, kLineKeys, into.voltage); }},
    {"bias", [](const Value& value, SfpConstants& into) { ReadMap(value, kLineKeys, into.bias); }},
    {"tx-power", [](const Value& value, SfpConstants& into) { ReadMap(value, kLineKeys, into.tx_power); }},
    {"rx-power",
     [](const Value& value, SfpConstants& into) {
       std::size_t count = 0;
       value.EachItemUpTo(into.rx_power.size(), "numbers", [&](const Value& item, std::size_t place) {
         into.rx_power[place] = static_cast<float>(item.Decimal(-1e38, 1e38));
         count = place + 1;
       });
       if (value.IsList() && count != into.rx_power.size()) value.Expected("five numbers");
     }},
};

void ReadCalibration(const Value& value, SfpValues& into) {
  into.external.reset();
  if (value.Is("internal")) return;
  if (!value.IsMap()) return value.Expected("internal, or a map of the constants of external calibration");
  ReadMap(value, kConstantKeys, into.external.emplace());
}

void ReadDateText(const Value& value, SfpValues& into) {
  char date[8];
  if (!ReadDate(value.Word(), date)) return value.Expected("a date like 2026-01-14");
  into.date.assign(date, sizeof date);
}

void ReadFcSpeeds(const Value& value, SfpValues& into) {
  const std::uint32_t mask = value.Mask(into.qsfp ? kQsfpFcSpeeds : std::span<const NamedNumber>(kFcSpeeds));
  into.fc_speeds = static_cast<std::uint8_t>(mask);
  into.fc_speeds_2 = static_cast<std::uint8_t>(mask >> 8);
}

void ReadEthernetSpeeds(const Value& value, SfpValues& into) {
  into.ethernet_speeds =
      ByteMask(value, into.qsfp ? std::span<const NamedNumber>(kQsfpEthernetSpeeds) : kSfpEthernetSpeeds);
  into.extended_ethernet =
      into.qsfp && (into.ethernet_speeds & kExtendedEthernet) != 0 ? kHundredGigabit : std::uint8_t{0};
}

// A module while it is read: named values, or the memory in a file.
struct SfpReading {
  SfpValues values;
  std::optional<SfpMemory> memory;
  std::optional<SfpMeasured> refreshed;
  bool update_fails = false;
};

constexpr KeyRow<SfpReading> kUpdateFails = {
    "update-fails", [](const Value& value, SfpReading& into) { value.Into(into.update_fails); }};

// A module whose memory is in a file.
constexpr KeyRow<SfpReading> kImageKeys[] = {
    {"image",
     [](const Value& value, SfpReading& into) {
       const std::optional<std::string> content = value.FileBytes(kLargestFile);
       if (!content) return;
       const std::string wrong = ReadSfpMemory(*content, into.memory.emplace());
       if (!wrong.empty()) value.Expected(wrong);
     }},
    kUpdateFails,
};

constexpr KeyRow<SfpReading> kModuleKeys[] = {
    {"form", ReadElsewhere},
    {"vendor", [](const Value& value, SfpReading& into) { into.values.vendor = value.Text(16); }},
    {"oui", [](const Value& value, SfpReading& into) { value.Octets(into.values.oui); }},
    {"part", [](const Value& value, SfpReading& into) { into.values.part = value.Text(16); }},
    {"revision", [](const Value& value,
                    SfpReading& into) { into.values.revision = value.Text(into.values.qsfp ? 2 : 4); }},
    {"serial", [](const Value& value, SfpReading& into) { into.values.serial = value.Text(16); }},
    {"date", [](const Value& value, SfpReading& into) { ReadDateText(value, into.values); }},
    {"speeds", [](const Value& value, SfpReading& into) { ReadFcSpeeds(value, into.values); }},
    {"ethernet", [](const Value& value, SfpReading& into) { ReadEthernetSpeeds(value, into.values); }},
    {"media", [](const Value& value, SfpReading& into) { into.values.media = ByteMask(value, kMedia); }},
    {"transmitter",
     [](const Value& value, SfpReading& into) { into.values.transmitter = ByteMask(value, kTransmitters); }},
    {"distance",
     [](const Value& value, SfpReading& into) { into.values.distance = ByteMask(value, kDistances); }},
    {"connector",
     [](const Value& value, SfpReading& into) { value.CodeInto(kConnectors, into.values.connector); }},
    {"wavelength",
     [](const Value& value, SfpReading& into) {
       into.values.wavelength = static_cast<std::uint16_t>(value.Number(0, 3276));
     }},
    {"measured",
     [](const Value& value, SfpReading& into) { ReadMap(value, kMeasuredKeys, into.values.measured); }},
    {"after-refresh", ReadElsewhere},
    kUpdateFails,
    // Of an SFP module alone:
    {"diagnostics", [](const Value& value, SfpReading& into) { value.Into(into.values.diagnostics); }},
    {"thresholds",
     [](const Value& value, SfpReading& into) { ReadMap(value, kAllThresholdsKeys, into.values); }},
    {"calibration", [](const Value& value, SfpReading& into) { ReadCalibration(value, into.values); }},
    {"firmware",
     [](const Value& value, SfpReading& into) {
       if (!ReadSfpVersion(value.Word(), into.values.firmware)) value.Expected("a version like 2.07");
     }},
};
constexpr std::size_t kSfpOnlyKeys = 4;
constexpr std::span<const KeyRow<SfpReading>> kSfpKeys(kModuleKeys);
constexpr auto kQsfpKeys = kSfpKeys.first(kSfpKeys.size() - kSfpOnlyKeys);

// Turns the default values into those of a QSFP module, which lacks some of an SFP module's.
void TakeForm(const Value& form, SfpValues& values) {
  values.qsfp = form.Choice(kForms) != 0;
  if (!values.qsfp) return;
  values.fc_speeds_2 = 0;
  values.connector = 0x0c;
  if (values.fc_speeds == 0) values.ethernet_speeds = 0x04;
}

// The form decides what the other keys mean. A refresh changes the measured values, so it is read last.
void ReadNamedValues(const Value& map, SfpReading& reading) {
  map.At("form", [&](const Value& form) { TakeForm(form, reading.values); });
  ReadMap(map, reading.values.qsfp ? kQsfpKeys : kSfpKeys, reading);
  map.At("after-refresh", [&](const Value& refreshed) {
    ReadMap(refreshed, kMeasuredKeys, reading.refreshed.emplace(reading.values.measured));
  });
}

struct SfpStateReading {
  SfpModule& module;
};

constexpr KeyRow<SfpStateReading> kStateKeys[] = {
    {"refreshed",
     [](const Value& value, SfpStateReading& into) {
       into.module.refreshed = value.Bool();
       if (into.module.refreshed) into.module.known = into.module.now;
     }},
    {"firmware",
     [](const Value& value, SfpStateReading& into) {
       std::pair<std::uint8_t, std::uint8_t> version;
       if (!ReadSfpVersion(value.Word(), version)) return value.Expected("a version like 2.07");
       SetSfpFirmware(into.module, version);
     }},
};

}  // namespace

std::shared_ptr<SfpModule> ReadSfp(const Value& value, const SfpValues& defaults) {
  if (value.Is("none")) return nullptr;
  if (!value.IsMap()) value.Expected("a map, or none");
  SfpReading reading;
  reading.values = defaults;
  bool from_file = false;
  value.At("image", [&](const Value&) { from_file = true; });
  if (from_file) {
    ReadMap(value, kImageKeys, reading);
  } else if (value.IsMap()) {
    ReadNamedValues(value, reading);
  }
  std::shared_ptr<SfpModule> module = MakeSfpModule(reading.values);
  if (reading.memory) module->known = module->now = *reading.memory;
  if (reading.refreshed) {
    reading.values.measured = *reading.refreshed;
    module->now = ComposeSfpMemory(reading.values);
  }
  module->update_fails = reading.update_fails;
  return module;
}

void ReadSfpState(const Value& map, SfpModule* module) {
  if (module == nullptr) return;
  SfpStateReading reading{*module};
  ReadMap(map, kStateKeys, reading);
}

StateNode SfpState(const SfpModule& module) {
  StateNode node(StateNode::Kind::kMap);
  if (module.refreshed) node["refreshed"] = true;
  if (module.updated) node["firmware"] = SfpVersionText(module.now);
  return node;
}

}  // namespace lab
