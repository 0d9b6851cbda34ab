// The numbers of an SFP module against the same numbers in double precision.
//
// An input is what the calculation reads, in the order of the image. Single precision may differ by a few
// units in the last place of each term; where the terms are beyond its range, only the absence of a finite
// result is checked.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>

#include "device/device_command.h"
#include "port/sfp/dmi_calculation.h"
#include "port/sfp/sfp_diagnostics.h"

namespace {

constexpr Region kRead[] = {{0, 1}, {256, 40}, {312, 36}, {352, 10}};

// A number as the exact calculation has it, and how far single precision may be from it.
struct Exact {
  double value;
  double error;
};

constexpr double kUnit = FLT_EPSILON;

Exact Near(double value) {
  return {value, 4 * kUnit * std::abs(value)};
}

unsigned Word(const std::uint8_t* image, std::size_t at) {
  return image[at] * 256U + image[at + 1];
}

// The two bytes in the order of a little-endian number.
unsigned Swapped(const std::uint8_t* image, std::size_t at) {
  return image[at + 1] * 256U + image[at];
}

// 256.1 for 0x0100: the high byte in decimal, once more, as decimals.
double Slope(unsigned number) {
  const unsigned decimals = number >> 8;
  return number + decimals / (decimals > 99 ? 1000.0 : decimals > 9 ? 100.0 : 10.0);
}

double HighDegrees(unsigned swapped) {
  return (swapped & 0x100U) != 0 ? swapped / 2.0 - 256 : swapped;
}

double LowDegrees(int swapped) {
  if (swapped < 0 || swapped > 255) return swapped - 512;
  return swapped > 127 ? swapped - 256 : swapped;
}

double Coefficient(const std::uint8_t* image, std::size_t at) {
  const unsigned exponent = (image[at] & 0x7FU) << 1 | image[at + 1] >> 7;
  const unsigned fraction = (image[at + 1] & 0x7FU) << 16 | image[at + 2] << 8 | image[at + 3];
  const double sign = image[at] > 127 ? -1 : 1;
  if (exponent == 255) return sign * static_cast<double>(FLT_MAX);
  if (exponent == 0) return sign * 0.0;
  return sign * std::ldexp(1.0 + fraction / 8388608.0, static_cast<int>(exponent) - 127);
}

struct Module {
  double entries[5][5];  // value, High Alarm, High Warning, Low Warning, Low Alarm of each quantity
  double slopes[5] = {};
  double offsets[5] = {};
  double coefficients[5];

  explicit Module(const std::uint8_t* image) {
    constexpr double kScales[] = {1, 1e-4, 2e-3, 1e-4, 1e-4};
    constexpr std::size_t kThresholds[] = {0, 4, 6, 2};
    for (std::size_t quantity = 1; quantity < 5; ++quantity) {
      entries[quantity][0] = Word(image, 352 + 2 * quantity) * kScales[quantity];
      for (std::size_t entry = 0; entry < 4; ++entry) {
        entries[quantity][entry + 1] =
            Word(image, 256 + 8 * quantity + kThresholds[entry]) * kScales[quantity];
      }
    }
    entries[0][0] = image[352] + image[353] / 256.0;
    entries[0][1] = HighDegrees(Swapped(image, 256));
    entries[0][2] = HighDegrees(Swapped(image, 260));
    const int low_warning = static_cast<int>(Swapped(image, 262));
    entries[0][3] = LowDegrees(low_warning > 32767 ? low_warning - 65536 : low_warning);
    entries[0][4] = LowDegrees(static_cast<int>(Swapped(image, 258)));
    slopes[0] = Slope(Swapped(image, 340));
    offsets[0] = Swapped(image, 342);
    slopes[1] = Slope(Swapped(image, 344));
    const int volts = static_cast<int>(Word(image, 346));
    offsets[1] = volts > 32767 ? volts - 65536 : volts;
    slopes[2] = Slope(image[333]);
    offsets[2] = image[335];
    slopes[3] = Slope(Swapped(image, 336));
    offsets[3] = 65536.0 * Swapped(image, 336);
    for (std::size_t i = 0; i < 5; ++i) coefficients[i] = Coefficient(image, 328 - 4 * i);
  }

  // The number that the table shows.
  Exact Calibrated(std::size_t quantity, std::size_t entry) const {
    const double r = entries[quantity][entry];
    if (quantity < 4) {
      if (slopes[quantity] == 0) return Near(r);
      const double product = r * slopes[quantity];
      return {product + offsets[quantity], 16 * kUnit * (std::abs(product) + std::abs(offsets[quantity]))};
    }
    if (std::all_of(coefficients, coefficients + 5, [](double c) { return c == 0; })) return Near(4 * r);
    double sum = coefficients[0];
    double size = std::abs(sum);
    for (std::size_t i = 1; i < 5; ++i) {
      sum += coefficients[i] * r;
      size += std::abs(coefficients[i] * r);
    }
    // Below the range of normal numbers a term can vanish.
    return {sum, 16 * kUnit * size + 16 * static_cast<double>(FLT_MIN)};
  }
};

bool IsWithin(float found, const Exact& exact) {
  const double size = exact.error / (16 * kUnit);
  if (size > static_cast<double>(FLT_MAX) / 2) return true;
  return std::isfinite(found) && std::abs(static_cast<double>(found) - exact.value) <= exact.error;
}

void CheckCell(float found, const Exact& exact) {
  if (IsWithin(found, exact)) return;
  std::fprintf(stderr, "found %.9g, exact %.17g within %g\n", static_cast<double>(found), exact.value,
               exact.error);
  std::abort();
}

// Whether a is at or above b: 1, 0, or -1 where rounding decides.
int AtOrAbove(const Exact& a, const Exact& b) {
  const double size = std::max(a.error, b.error) / (16 * kUnit);
  const double difference = a.value - b.value;
  if (size > static_cast<double>(FLT_MAX) / 2 || std::abs(difference) <= a.error + b.error) return -1;
  return difference > 0 ? 1 : 0;
}

void CheckStatus(const Module& module, std::size_t quantity) {
  Exact row[5];
  for (std::size_t entry = 0; entry < 5; ++entry) row[entry] = module.Calibrated(quantity, entry);
  const int high_alarm = AtOrAbove(row[0], row[1]);
  const int high_warning = AtOrAbove(row[0], row[2]);
  const int low_warning = AtOrAbove(row[3], row[0]);
  const int low_alarm = AtOrAbove(row[4], row[0]);
  const int fault = quantity == 4 ? low_alarm : low_warning;
  if (high_alarm < 0 || high_warning < 0 || low_warning < 0 || low_alarm < 0) return;
  const bool warning = high_warning > 0 || (quantity == 4 && low_warning > 0);
  const char* const expected = high_alarm > 0 || fault > 0 ? "Fault" : warning ? "Warning" : "Normal";
  RequireSame(GetDiagStatus(static_cast<std::uint32_t>(quantity + 1)), expected);
}

// The number of a row of the table; 1 is that of the status words.
constexpr std::uint32_t kRows[] = {0, 2, 3, 4, 5};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto* const image = static_cast<std::uint8_t*>(std::calloc(1, 512));
  Input input(data, size);
  FillRecord(input, image, 512, kRead);
  const std::uint8_t kind = image[0];
  if (kind == 12 || kind == 13 || kind == 17 || kind == 18) {
    std::fill(std::begin(valueArray), std::end(valueArray), 2.5F);
    CalculateDetailsDMIData({image, 512});
    Require(
        std::all_of(std::begin(valueArray), std::end(valueArray), [](float value) { return value == 2.5F; }));
    return 0;
  }
  std::fill(std::begin(valueArray), std::end(valueArray), std::numeric_limits<float>::quiet_NaN());
  CalculateDetailsDMIData({image, 512});
  const Module module(image);
  for (std::size_t quantity = 0; quantity < 5; ++quantity) {
    CheckCell(slopeArray[quantity], Near(module.slopes[quantity]));
    CheckCell(offsetArray[quantity], Near(module.offsets[quantity]));
    CheckCell(rxPowerArray[quantity], Near(module.coefficients[quantity]));
    for (std::size_t entry = 0; entry < 5; ++entry) {
      CheckCell(valueArray[quantity * 5 + entry], Near(module.entries[quantity][entry]));
      CheckCell(GetDiagValue(kRows[entry], static_cast<std::uint32_t>(quantity + 1)),
                module.Calibrated(quantity, entry));
    }
    CheckStatus(module, quantity);
  }
  return 0;
}
