#include "tools/lab/view/module.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include "tools/lab/view/text.h"

namespace view {
namespace {

constexpr QuantityWords kWords[kQuantities] = {
    {"Temperature", "C", 1, 3.0}, {"Voltage", "V", 2, 0.1},    {"Tx bias", "mA", 2, 1.0},
    {"Tx power", "mW", 4, 1.25},  {"Rx power", "mW", 4, 1.25},
};
static_assert(kRxPower + 1 == kQuantities);

// Places of a page's identity, from the page's base on, which SFP and QSFP modules share.
struct TextField {
  std::string Module::*text;
  std::size_t place, size;
};
constexpr TextField kTexts[] = {
    {&Module::vendor, 20, 16}, {&Module::part, 40, 16}, {&Module::serial, 68, 16}, {&Module::date, 84, 8}};
constexpr std::size_t kRevision = 56;

constexpr std::size_t kQsfpPage = 128;

// SFF-8472, A0 byte 92.
constexpr std::uint8_t kDiagnosticsImplemented = 0x40;
constexpr std::uint8_t kExternallyCalibrated = 0x10;

// SFF-8472, A2: four thresholds, the value, and slope and offset of the calibration.
struct SfpPlaces {
  double unit;
  std::size_t thresholds, value, calibration;
};
constexpr std::size_t kA2 = 256;
constexpr SfpPlaces kSfpPlaces[kQuantities] = {{1.0 / 256, 0, 96, 84},
                                               {0.0001, 8, 98, 88},
                                               {0.002, 16, 100, 76},
                                               {0.0001, 24, 102, 80},
                                               {0.0001, 32, 104, 0}};
constexpr std::size_t kRxPower4 = 56;  // Rx_PWR(4) to Rx_PWR(0), four bytes each

// SFF-8636, lower page: the value of the first lane, and its flags: high alarm, low alarm, high warning, low
// warning, from the top bit of a half byte down.
struct QsfpPlaces {
  double unit;
  std::size_t value, lanes, flags;
};
constexpr QsfpPlaces kQsfpPlaces[kQuantities] = {
    {1.0 / 256, 22, 1, 6}, {0.0001, 26, 1, 7}, {0.002, 42, 4, 11}, {0.0001, 50, 4, 13}, {0.0001, 34, 4, 9}};

class Reader {
 public:
  Reader(const recording::SfpImage& image, std::size_t base) : bytes_(image.bytes + base) {}

  std::uint8_t Byte(std::size_t place) const { return bytes_[place]; }
  std::uint16_t Word(std::size_t place) const {
    return static_cast<std::uint16_t>(bytes_[place] << 8 | bytes_[place + 1]);
  }
  std::int16_t SignedWord(std::size_t place) const { return static_cast<std::int16_t>(Word(place)); }
  float Float(std::size_t place) const {
    const auto bits = static_cast<std::uint32_t>(Word(place)) << 16 | Word(place + 2);
    return std::bit_cast<float>(bits);
  }
  // Up to its terminator or the end of the field.
  std::string Text(std::size_t place, std::size_t size) const {
    const char* const text = reinterpret_cast<const char*>(bytes_ + place);
    return {text, strnlen(text, size)};
  }

 private:
  const std::uint8_t* bytes_;
};

bool IsQsfp(std::uint8_t identifier) {
  return identifier == 0x0c || identifier == 0x0d || identifier == 0x11 || identifier == 0x12;
}

// A stored number of an SFP module in the quantity's unit. Of the two temperatures both have a sign.
double SfpValue(const Reader& a2, Quantity quantity, std::size_t place, bool external) {
  const SfpPlaces& places = kSfpPlaces[quantity];
  const double stored = quantity == kTemperature ? a2.SignedWord(place) : a2.Word(place);
  if (!external) return stored * places.unit;
  if (quantity != kRxPower) {
    const double slope = a2.Word(places.calibration) / 256.0;
    return (stored * slope + a2.SignedWord(places.calibration + 2)) * places.unit;
  }
  double value = 0;
  for (std::size_t i = 0; i <= 4; ++i) {  // Rx_PWR(4) first, so that each step is one more power
    value = value * stored + static_cast<double>(a2.Float(kRxPower4 + 4 * i));
  }
  return value * places.unit;
}

void Judge(Measurement& measurement, double high_alarm, double low_alarm, double high_warning,
           double low_warning) {
  struct Edge {
    double edge;
    Limit limit;
    bool above;
  };
  const Edge edges[] = {{high_alarm, Limit::kAlarm, true},
                        {low_alarm, Limit::kAlarm, false},
                        {high_warning, Limit::kWarning, true},
                        {low_warning, Limit::kWarning, false}};
  if (!std::isfinite(measurement.value) || !(high_alarm > low_alarm)) return;  // no number, no limits
  for (const Edge& row : edges) {
    if (row.limit == Limit::kWarning && !(high_warning > low_warning)) return;
    if (row.above ? measurement.value <= row.edge : measurement.value >= row.edge) continue;
    measurement.limit = row.limit;
    measurement.above = row.above;
    measurement.edge = row.edge;
    return;
  }
}

void MeasureSfp(const recording::SfpImage& image, Module& module) {
  const std::uint8_t monitoring = image.bytes[92];
  module.measures = (monitoring & kDiagnosticsImplemented) != 0;
  if (!module.measures) return;
  const bool external = (monitoring & kExternallyCalibrated) != 0;
  const Reader a2(image, kA2);
  for (std::size_t i = 0; i < kQuantities; ++i) {
    const auto quantity = static_cast<Quantity>(i);
    const auto at = [&](std::size_t place) { return SfpValue(a2, quantity, place, external); };
    const std::size_t limits = kSfpPlaces[i].thresholds;
    module.measured[i].value = at(kSfpPlaces[i].value);
    Judge(module.measured[i], at(limits), at(limits + 2), at(limits + 4), at(limits + 6));
  }
}

// The flags of one lane, in the low four bits.
unsigned LaneFlags(const Reader& lower, const QsfpPlaces& places, std::size_t lane) {
  const unsigned byte = lower.Byte(places.flags + lane / 2);
  return (lane % 2 == 0 ? byte >> 4 : byte) & 0x0fu;
}

void JudgeFlags(Measurement& measurement, unsigned flags) {
  constexpr unsigned kHighAlarm = 8;
  constexpr unsigned kLowAlarm = 4;
  constexpr unsigned kHighWarning = 2;
  constexpr unsigned kLowWarning = 1;
  if ((flags & (kHighAlarm | kLowAlarm)) != 0) {
    measurement.limit = Limit::kAlarm;
    measurement.above = (flags & kHighAlarm) != 0;
  } else if ((flags & (kHighWarning | kLowWarning)) != 0) {
    measurement.limit = Limit::kWarning;
    measurement.above = (flags & kHighWarning) != 0;
  }
}

// Shows the first lane, or the first one that is worse.
void MeasureQsfp(const recording::SfpImage& image, Module& module) {
  module.measures = true;
  const Reader lower(image, 0);
  for (std::size_t i = 0; i < kQuantities; ++i) {
    const QsfpPlaces& places = kQsfpPlaces[i];
    for (std::size_t lane = 0; lane < places.lanes; ++lane) {
      const std::size_t place = places.value + 2 * lane;
      Measurement measurement;
      measurement.value = (i == kTemperature ? lower.SignedWord(place) : lower.Word(place)) * places.unit;
      JudgeFlags(measurement, LaneFlags(lower, places, lane));
      if (lane == 0 || measurement.limit > module.measured[i].limit) module.measured[i] = measurement;
    }
  }
}

}  // namespace

const QuantityWords& WordsOf(Quantity quantity) {
  return kWords[quantity];
}

Module ReadModule(const recording::SfpImage& image) {
  Module module;
  module.present = std::any_of(std::begin(image.bytes), std::end(image.bytes),
                               [](std::uint8_t byte) { return byte != 0; });
  if (!module.present) return module;
  module.qsfp = IsQsfp(image.bytes[0]);
  const Reader page(image, module.qsfp ? kQsfpPage : 0);
  for (const TextField& row : kTexts) module.*row.text = page.Text(row.place, row.size);
  module.revision = page.Text(kRevision, module.qsfp ? 2 : 4);
  if (module.qsfp) {
    MeasureQsfp(image, module);
  } else {
    MeasureSfp(image, module);
  }
  return module;
}

std::string ValueText(Quantity quantity, double value) {
  if (!std::isfinite(value) || std::fabs(value) > 1e9) return "no number";
  const QuantityWords& words = kWords[quantity];
  return Decimal(value, words.decimals) + ' ' + words.unit;
}

std::string LimitText(Quantity quantity, const Measurement& measurement) {
  if (measurement.limit == Limit::kWithin) return {};
  std::string text = kWords[quantity].name;
  text[0] = static_cast<char>(text[0] | 0x20);  // lower case within a sentence
  text += " is " + ValueText(quantity, measurement.value);
  text += measurement.above ? ", above its " : ", below its ";
  text += measurement.limit == Limit::kAlarm ? "alarm limit" : "warning limit";
  if (measurement.edge) text += " of " + ValueText(quantity, *measurement.edge);
  return text;
}

bool IsNoticeable(Quantity quantity, const Measurement& before, const Measurement& after) {
  if (before.limit != after.limit || (before.limit != Limit::kWithin && before.above != after.above))
    return true;
  if (!std::isfinite(before.value) && !std::isfinite(after.value)) return false;
  const double step = kWords[quantity].noticeable;
  if (quantity != kTxPower && quantity != kRxPower) return !(std::fabs(after.value - before.value) < step);
  constexpr double kNoLight = 0.0005;  // mW: below it, the receiver's noise
  const double low = std::max(std::min(before.value, after.value), kNoLight);
  const double high = std::max(std::max(before.value, after.value), kNoLight);
  return !(high < low * step);
}

std::string ModuleName(const Module& module) {
  const std::string names[] = {CleanText(module.vendor), CleanText(module.part)};
  const std::string name = Joined(names, " ");
  return name.empty() ? "a module without a name" : name;
}

}  // namespace view
