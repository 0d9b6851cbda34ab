// What the image of a pluggable module says: who made it, what it measures, and whether that is within its
// own limits (SFF-8472; SFF-8636 for QSFP modules).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "recording/recording.h"

namespace view {

enum class Limit : std::uint8_t { kWithin, kWarning, kAlarm };

enum Quantity : std::uint8_t { kTemperature, kVoltage, kBias, kTxPower, kRxPower };
inline constexpr std::size_t kQuantities = 5;

// How a quantity is shown, and the least change of it that is more than time passing.
struct QuantityWords {
  const char* name;  // "Tx power", at the beginning of a sentence
  const char* unit;
  int decimals;
  double noticeable;  // in the unit; of a power, a factor
};
const QuantityWords& WordsOf(Quantity quantity);

struct Measurement {
  double value = 0;  // degrees Celsius, volts, milliamperes, milliwatts
  Limit limit = Limit::kWithin;
  bool above = false;                         // of a limit that is crossed: which side
  std::optional<double> edge = std::nullopt;  // the limit that is crossed; a QSFP image does not hold it
};

struct Module {
  bool present = false;  // an empty cage reads as zeros
  bool qsfp = false;
  std::string vendor, part, revision, serial, date;  // as the module has them, not yet clean
  bool measures = false;
  std::array<Measurement, kQuantities> measured{};
};

Module ReadModule(const recording::SfpImage& image);

// "36.5 C", "0.5000 mW".
std::string ValueText(Quantity quantity, double value);

// "temperature is 71.5 C, above its warning limit of 70.0 C"; empty for a value within its limits.
std::string LimitText(Quantity quantity, const Measurement& measurement);

// Whether a value moved so far that it is worth a word, or crossed a limit.
bool IsNoticeable(Quantity quantity, const Measurement& before, const Measurement& after);

// "SORVEX OPTICS SX-F16-SW", clean; "a module without a name" where the texts are empty.
std::string ModuleName(const Module& module);

}  // namespace view
