#include "tools/lab/diff/link_parameters.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "tools/lab/view/module.h"
#include "tools/lab/view/text.h"

namespace diff {
namespace {

using recording::Bytes;

constexpr std::size_t kWordBytes = 4;
constexpr std::size_t kFirstDescriptor = 2 * kWordBytes;  // past the command and the length of the list

std::uint32_t WordAt(const Bytes& bytes, std::size_t place) {
  return std::uint32_t{bytes[place]} << 24 | std::uint32_t{bytes[place + 1]} << 16 |
         std::uint32_t{bytes[place + 2]} << 8 | bytes[place + 3];
}

std::uint16_t HalfAt(const Bytes& bytes, std::size_t place) {
  return static_cast<std::uint16_t>(bytes[place] << 8 | bytes[place + 1]);
}

// Two answers of one length. What is said or is time is cleared in both; the rest has to be the same.
struct Answers {
  Bytes before;
  Bytes after;

  void Clear(std::size_t place, std::size_t size) {
    std::fill_n(before.begin() + static_cast<std::ptrdiff_t>(place), size, std::uint8_t{0});
    std::fill_n(after.begin() + static_cast<std::ptrdiff_t>(place), size, std::uint8_t{0});
  }
};

using Compare = void (*)(Report& report, Answers& answers, std::size_t place, std::size_t words);

void CompareCounters(Report& report, Answers& answers, std::size_t place, std::size_t words,
                     std::span<const char* const> names) {
  for (std::size_t i = 0; i < std::min(words, names.size()); ++i) {
    const std::size_t at = place + i * kWordBytes;
    const std::uint32_t was = WordAt(answers.before, at);
    const std::uint32_t is = WordAt(answers.after, at);
    if (was != is) report.AddCounter(names[i], was, is);
    answers.Clear(at, kWordBytes);
  }
}

void CompareLinkErrors(Report& report, Answers& answers, std::size_t place, std::size_t words) {
  constexpr const char* kNames[] = {
      "Switch: link failure count",
      "Switch: loss of sync count",
      "Switch: loss of signal count",
      "Switch: primitive sequence error count",
      "Switch: invalid transmission word count",
      "Switch: invalid CRC count",
  };
  CompareCounters(report, answers, place, words, kNames);
}

void CompareCorrection(Report& report, Answers& answers, std::size_t place, std::size_t words) {
  constexpr const char* kNames[] = {"Switch: correctable FEC block count",
                                    "Switch: uncorrectable FEC block count"};
  CompareCounters(report, answers, place, words, kNames);
}

// Two bytes for each quantity, in the units of SFF-8472; then the flags, which are no value.
void CompareMeasured(Report& report, Answers& answers, std::size_t place, std::size_t words) {
  constexpr const char* kNames[] = {"Switch: module temperature", "Switch: module voltage",
                                    "Switch: module bias", "Switch: module tx power",
                                    "Switch: module rx power"};
  constexpr double kUnits[] = {1.0 / 256, 0.0001, 0.002, 0.0001, 0.0001};
  for (std::size_t i = 0; i < view::kQuantities && 2 * i + 2 <= words * kWordBytes; ++i) {
    const auto quantity = static_cast<view::Quantity>(i);
    const auto value = [&](const Bytes& bytes) {
      const std::uint16_t half = HalfAt(bytes, place + 2 * i);
      return (quantity == view::kTemperature ? static_cast<std::int16_t>(half) : half) * kUnits[i];
    };
    const double was = value(answers.before);
    const double is = value(answers.after);
    if (view::IsNoticeable(quantity, {.value = was}, {.value = is})) {
      report.AddValue(kNames[i], view::ValueText(quantity, was), view::ValueText(quantity, is));
    }
    answers.Clear(place + 2 * i, 2);
  }
}

struct Descriptor {
  std::uint32_t tag;
  Compare compare;
};

constexpr Descriptor kDescriptors[] = {
    {0x00010000, &CompareMeasured}, {0x00010002, &CompareLinkErrors}, {0x00010005, &CompareCorrection}};

// Walks the descriptors while both answers have the same ones.
void CompareDescriptors(Report& report, Answers& answers) {
  for (std::size_t place = kFirstDescriptor; place + 2 * kWordBytes <= answers.before.size();) {
    const std::uint32_t tag = WordAt(answers.before, place);
    const std::size_t length = WordAt(answers.before, place + kWordBytes);
    if (tag != WordAt(answers.after, place) || length != WordAt(answers.after, place + kWordBytes)) return;
    place += 2 * kWordBytes;
    const std::size_t held = std::min(length, answers.before.size() - place);
    for (const Descriptor& row : kDescriptors) {
      if (row.tag == tag) row.compare(report, answers, place, held / kWordBytes);
    }
    place += held;
  }
}

}  // namespace

void CompareLinkParameters(Report& report, const recording::SizedBytes& before,
                           const recording::SizedBytes& after) {
  Answers answers = {before.bytes, after.bytes};
  // Both without the zeros at their ends: a counter in the last place may be one of them.
  const std::size_t size = std::max(answers.before.size(), answers.after.size());
  answers.before.resize(size);
  answers.after.resize(size);
  CompareDescriptors(report, answers);
  if (before.size == after.size && answers.before == answers.after) return;
  report.AddOtherBytes("the switch's answer to Read Diagnostic Parameters");
}

}  // namespace diff
