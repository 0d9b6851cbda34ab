#include "tools/lab/diff/modules.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>

#include "tools/lab/view/module.h"
#include "tools/lab/view/text.h"

namespace diff {
namespace {

using recording::SfpImage;
using view::Limit;
using view::Measurement;
using view::Module;
using view::Quantity;

struct Range {
  std::size_t first, end;
};

// What a module measures from moment to moment, with the flags that follow from it (SFF-8472, A2; SFF-8636,
// lower page).
constexpr Range kLiveOfSfp[] = {{256 + 96, 256 + 120}};
constexpr Range kLiveOfQsfp[] = {{2, 82}};

// "SORVEX OPTICS SX-F16-SW, serial SX001000".
std::string FullName(const Module& module) {
  const std::string serial = view::CleanText(module.serial);
  return view::ModuleName(module) + (serial.empty() ? "" : ", serial " + serial);
}

bool IsSameModule(const Module& before, const Module& after) {
  return before.qsfp == after.qsfp && before.vendor == after.vendor && before.part == after.part &&
         before.serial == after.serial;
}

std::string ModuleValue(Quantity quantity) {
  std::string name = view::WordsOf(quantity).name;
  name[0] = static_cast<char>(name[0] | 0x20);
  return "Module " + name;
}

void SayLimit(Report& report, Quantity quantity, OptionalText before, const Measurement& after) {
  std::string limit = view::LimitText(quantity, after);
  report.Add(ModuleValue(quantity), std::move(before), view::ValueText(quantity, after.value),
             "Module " + std::move(limit) + ".");
}

// Of a module that was not there before: only what is wrong with it.
void SayLimits(Report& report, const Module& after) {
  for (std::size_t i = 0; i < view::kQuantities; ++i) {
    const auto quantity = static_cast<Quantity>(i);
    const Measurement& measured = after.measured[i];
    if (measured.limit != Limit::kWithin) SayLimit(report, quantity, std::nullopt, measured);
  }
}

void CompareMeasured(Report& report, const Module& before, const Module& after) {
  for (std::size_t i = 0; i < view::kQuantities; ++i) {
    const auto quantity = static_cast<Quantity>(i);
    const Measurement& was = before.measured[i];
    const Measurement& is = after.measured[i];
    if (!view::IsNoticeable(quantity, was, is)) continue;
    const std::string old_value = view::ValueText(quantity, was.value);
    const std::string new_value = view::ValueText(quantity, is.value);
    if (is.limit != Limit::kWithin && (is.limit != was.limit || is.above != was.above)) {
      report.Add(ModuleValue(quantity), old_value, new_value,
                 "Module " + view::LimitText(quantity, is) + "; it was " + old_value + ".");
    } else if (is.limit == Limit::kWithin && was.limit != Limit::kWithin) {
      report.Add(ModuleValue(quantity), old_value, new_value,
                 ModuleValue(quantity)
                     .append(" is within its limits again: it was ")
                     .append(old_value)
                     .append(", it is ")
                     .append(new_value)
                     .append("."));
    } else {
      report.AddValue(ModuleValue(quantity), old_value, new_value);
    }
  }
}

void CompareText(Report& report, const char* what, const std::string& before, const std::string& after) {
  const std::string was = view::CleanText(before);
  const std::string is = view::CleanText(after);
  if (was != is) report.AddValue(what, was, is);
}

// Whether anything differs beyond what a module measures, and the texts that are compared by themselves.
bool OthersDiffer(const SfpImage& before, const SfpImage& after, bool qsfp, bool texts_said) {
  SfpImage one = before;
  SfpImage other = after;
  const auto clear = [&](std::size_t first, std::size_t end) {
    std::fill(one.bytes + first, one.bytes + end, std::uint8_t{0});
    std::fill(other.bytes + first, other.bytes + end, std::uint8_t{0});
  };
  for (const Range& range : qsfp ? std::span<const Range>(kLiveOfQsfp) : std::span<const Range>(kLiveOfSfp)) {
    clear(range.first, range.end);
  }
  if (texts_said) {
    const std::size_t page = qsfp ? 128 : 0;
    clear(page + 56, page + 60);  // revision
    clear(page + 63, page + 64);  // and the two check sums
    clear(page + 84, page + 92);  // date
    clear(page + 95, page + 96);
  }
  return std::memcmp(one.bytes, other.bytes, sizeof one.bytes) != 0;
}

}  // namespace

void CompareModules(Report& report, const SfpImage& before, const SfpImage& after) {
  if (std::memcmp(before.bytes, after.bytes, sizeof before.bytes) == 0) return;
  const Module was = view::ReadModule(before);
  const Module is = view::ReadModule(after);
  if (!is.present) {
    return report.Add("Module", FullName(was), std::nullopt,
                      "The module " + FullName(was) + " was taken out.");
  }
  if (!was.present) {
    report.Add("Module", std::nullopt, FullName(is), "The module " + FullName(is) + " was put in.");
    return SayLimits(report, is);
  }
  if (!IsSameModule(was, is)) {
    report.Add("Module", FullName(was), FullName(is),
               "The module was swapped: it was " + FullName(was) + ", it is " + FullName(is) + ".");
    return SayLimits(report, is);
  }
  const std::size_t known = report.Changes().size();
  CompareText(report, "Module revision", was.revision, is.revision);
  CompareText(report, "Module date", was.date, is.date);
  const bool texts_said = report.Changes().size() > known;
  if (was.measures && is.measures) CompareMeasured(report, was, is);
  if (OthersDiffer(before, after, is.qsfp, texts_said)) report.AddOtherBytes("the module's memory");
}

}  // namespace diff
