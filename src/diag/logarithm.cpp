#include "diag/logarithm.h"

#include <bit>
#include <cstdint>
#include <limits>

namespace {

constexpr int kMantissaBits = 23;
constexpr std::uint32_t kExponentMask = 0xff800000;
constexpr std::uint32_t kOne = 0x3f800000;  // 1.0F

// The exponent of `bits` when its mantissa is taken to lie in [start, 2 * start).
std::int32_t ExponentFrom(std::uint32_t start, std::uint32_t bits) {
  return static_cast<std::int32_t>(bits - start) >> kMantissaBits;
}

float WithoutExponent(std::uint32_t start, std::uint32_t bits) {
  return std::bit_cast<float>(bits - ((bits - start) & kExponentMask));
}

// A point near the middle of each sixteenth of [0.699, 1.398): its reciprocal, and minus the logarithm of
// that.
struct Point {
  double reciprocal;
  double logarithm;
};

constexpr std::uint32_t kPointsStart = 0x3f330000;
constexpr int kPointBits = 4;
constexpr Point kPoints[1U << kPointBits] = {
    {0x1.661ec79f8f3bep+0, -0x1.57bf7808caadep-2}, {0x1.571ed4aaf883dp+0, -0x1.2bef0a7c06ddbp-2},
    {0x1.49539f0f010bp+0, -0x1.01eae7f513a67p-2},  {0x1.3c995b0b80385p+0, -0x1.b31d8a68224e9p-3},
    {0x1.30d190c8864a5p+0, -0x1.6574f0ac07758p-3}, {0x1.25e227b0b8eap+0, -0x1.1aa2bc79c81p-3},
    {0x1.1bb4a4a1a343fp+0, -0x1.a4e76ce8c0e5ep-4}, {0x1.12358f08ae5bap+0, -0x1.1973c5a611cccp-4},
    {0x1.0953f419900a7p+0, -0x1.252f438e10c1ep-5}, {0x1p+0, 0x0p+0},
    {0x1.e608cfd9a47acp-1, 0x1.aa5aa5df25984p-5},  {0x1.ca4b31f026aap-1, 0x1.c5e53aa362eb4p-4},
    {0x1.b2036576afce6p-1, 0x1.526e57720db08p-3},  {0x1.9c2d163a1aa2dp-1, 0x1.bc2860d22477p-3},
    {0x1.886e6037841edp-1, 0x1.1058bc8a07ee1p-2},  {0x1.767dcf5534862p-1, 0x1.4043057b6ee09p-2},
};

// The natural logarithm: that of the nearest point, and a polynomial for the rest of the way. It is computed
// in double precision and is off by less than 0.82 units of the last place; the coefficients are part of the
// result's rounding.
float NaturalLog(float value) {
  constexpr double kLogOf2 = 0x1.62e42fefa39efp-1;
  constexpr double kSquare = -0x1.ffffef20a4123p-2;
  constexpr double kCube = 0x1.5575b0be00b6ap-2;
  constexpr double kFourth = -0x1.00ea348b88334p-2;
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t index = ((bits - kPointsStart) >> (kMantissaBits - kPointBits)) % (1U << kPointBits);
  const Point& point = kPoints[index];
  const double mantissa = WithoutExponent(kPointsStart, bits);
  const double rest = mantissa * point.reciprocal - 1.0;
  const double square = rest * rest;
  const double start = point.logarithm + ExponentFrom(kPointsStart, bits) * kLogOf2 + rest;
  return static_cast<float>((kFourth * square + (kCube * rest + kSquare)) * square + start);
}

}  // namespace

float Log10(float value) {
  constexpr float kOneByLogOf10 = 4.3429449201e-01F;
  // log10(2) in two parts: the high one times an exponent is exact.
  constexpr float kLog10Of2High = 3.0102920532e-01F;
  constexpr float kLog10Of2Low = 7.9034151668e-07F;
  if (value == 0.0F) return -std::numeric_limits<float>::infinity();
  const auto bits = std::bit_cast<std::uint32_t>(value);
  // Numbers below 1 are taken as a mantissa in [0.5, 1), so that both parts of the sum have one sign.
  const std::uint32_t start = bits < kOne ? kOne - (1U << kMantissaBits) : kOne;
  const float mantissa = WithoutExponent(start, bits);
  const auto exponent = static_cast<float>(ExponentFrom(start, bits));
  return (exponent * kLog10Of2Low + kOneByLogOf10 * NaturalLog(mantissa)) + exponent * kLog10Of2High;
}
