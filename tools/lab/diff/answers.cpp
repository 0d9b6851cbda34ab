#include "tools/lab/diff/answers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tools/lab/diff/fields.h"
#include "tools/lab/diff/link_parameters.h"
#include "tools/lab/diff/matching.h"
#include "tools/lab/diff/modules.h"
#include "tools/lab/diff/record_fields.h"
#include "tools/lab/diff/vpd.h"
#include "tools/lab/view/words.h"

namespace diff {
namespace {

using recording::Answer;
using recording::Asked;
using recording::SizedBytes;
using recording::StatisticsBlock;
using recording::StatisticsList;
using view::CodeWord;

constexpr CodeWord kPersonalities[] = {{0, "FC"}, {1, "CNA"}};
constexpr CodeWord kNoYes[] = {{0, "no"}, {1, "yes"}};
constexpr CodeWord kOffOn[] = {{0, "off"}, {1, "on"}};
constexpr CodeWord kBootModes[] = {{1, "BIOS"}, {2, "UEFI"}, {4, "NVMe"}};

bool SameContent(const SizedBytes& one, const SizedBytes& other) {
  return one.size == other.size && one.bytes == other.bytes;
}

template <class Record>
bool SameContent(const Record& one, const Record& other) {
  static_assert(std::is_trivially_copyable_v<Record>);
  return std::memcmp(&one, &other, sizeof one) == 0;
}

bool SameContent(const StatisticsList& one, const StatisticsList& other) {
  return one.free_result == other.free_result &&
         std::equal(one.elements.begin(), one.elements.end(), other.elements.begin(), other.elements.end(),
                    [](const auto& a, const auto& b) { return SameContent(a, b); });
}

bool SameContent(const StatisticsBlock& one, const StatisticsBlock& other) {
  return one.is_null == other.is_null && one.size == other.size && SameContent(one.block, other.block);
}

template <class Record>
std::string StateText(const Answer<Record>& answer) {
  if (answer.asked == Asked::kNo) return "not made";
  if (answer.asked == Asked::kMissing) return "missing from the library";
  return answer.Good() ? "answered" : "refused with " + view::ResultText(answer.result);
}

// "The call for the lockdown status answered before and is refused with 150 (maintenance mode) now."
template <class Record>
std::string StateSentence(const std::string& name, const Answer<Record>& before,
                          const Answer<Record>& after) {
  const std::string was = before.Good() ? "answered" : "was " + StateText(before);
  const std::string is = after.Good() ? "answers" : "is " + StateText(after);
  return "The call for " + name + " " + was + " before and " + is + " now.";
}

// Compares one answer of two hosts. `name` is what the call is for: "the lockdown status". `compare` takes
// the two records of calls that answered.
template <class Record, class Compare>
void CompareAnswer(Report& report, const char* name, const Answer<Record>& before,
                   const Answer<Record>& after, Compare compare) {
  if (before.asked != after.asked || (before.asked == Asked::kYes && before.result != after.result)) {
    return report.Add("The call for " + std::string(name), StateText(before), StateText(after),
                      StateSentence(name, before, after));
  }
  if (SameContent(before.record, after.record)) return;
  if (!after.Good()) return report.AddOtherBytes(std::string("what the refused call for ") + name + " left");
  compare(before.record, after.record);
}

// An answer that is one value.
template <class Number>
void CompareValue(Report& report, const char* name, const char* what, const Answer<Number>& before,
                  const Answer<Number>& after, Form form, std::span<const CodeWord> words = {}) {
  CompareAnswer(report, name, before, after, [&](Number was, Number is) {
    const Field field[] = {{what, 0, sizeof(Number), form, words}};
    CompareRecords(report, name, field, was, is);
  });
}

// An answer that is a record of named fields.
template <class Record>
void CompareFields(Report& report, const char* name, const Answer<Record>& before,
                   const Answer<Record>& after, std::span<const Field> fields) {
  CompareAnswer(report, name, before, after,
                [&](const Record& was, const Record& is) { CompareRecords(report, name, fields, was, is); });
}

void CompareTemperature(Report& report, const BoardTemperature& before, const BoardTemperature& after) {
  constexpr int kNoticeable = 3;  // degrees Celsius: less is what time does
  if (std::abs(after.celsius - before.celsius) >= kNoticeable) {
    report.AddValue("Board temperature", std::to_string(before.celsius) + " C",
                    std::to_string(after.celsius) + " C");
  }
  BoardTemperature was = before;
  was.celsius = after.celsius;
  if (!SameContent(was, after)) report.AddOtherBytes("the board temperature");
}

void CompareVpdBytes(Report& report, const SizedBytes& before, const SizedBytes& after) {
  if (CompareVpd(report, ReadVpd(before.bytes), ReadVpd(after.bytes))) return;
  report.AddOtherBytes("the Vital Product Data");
}

void CompareFirmwareStatistics(Report& report, const StatisticsBlock& before, const StatisticsBlock& after) {
  constexpr const char* kName = "the firmware statistics";
  CompareRecords(report, kName, FirmwareStatisticsFields(), before.block, after.block);
  if (before.is_null != after.is_null) {
    report.AddValue("Firmware statistics", before.is_null ? "no block" : "a block",
                    after.is_null ? "no block" : "a block");
  }
  if (before.size != after.size) {
    report.AddValue("Size of the firmware statistics", std::to_string(before.size),
                    std::to_string(after.size));
  }
}

// The parameter calls and the boot calls use one record, each for its own fields: the same bytes twice.
struct Twice {
  const HBAParamsInfo& before;
  const HBAParamsInfo& after;
};

enum class Kept { kBootFields, kOtherBytes };

// The record without the bytes in which `other` changes just as `own` does, but for those of the call's own:
// the rest is said there.
HBAParamsInfo WithoutDoubles(const HBAParamsInfo& record, const Twice& own, const Twice& other, Kept kept) {
  const auto byte = [](const HBAParamsInfo& info, std::size_t i) {
    return reinterpret_cast<const std::byte*>(&info)[i];
  };
  std::vector<bool> is_boot(sizeof record);
  for (const Field& field : BootFields()) {
    std::fill_n(is_boot.begin() + static_cast<std::ptrdiff_t>(field.offset), field.size, true);
  }
  HBAParamsInfo rest = record;
  auto* const bytes = reinterpret_cast<std::byte*>(&rest);
  for (std::size_t i = 0; i < sizeof rest; ++i) {
    const bool same_before = byte(own.before, i) == byte(other.before, i);
    const bool same_after = byte(own.after, i) == byte(other.after, i);
    const bool is_own = is_boot[i] == (kept == Kept::kBootFields);
    if (same_before && same_after && !is_own) bytes[i] = std::byte{};
  }
  return rest;
}

void CompareConfiguration(Report& report, const recording::ProtocolRecording& before,
                          const recording::ProtocolRecording& after) {
  constexpr const char* kParameters = "the HBA parameters";
  constexpr const char* kBoot = "the boot settings";
  const bool both =
      before.hba_params.Good() && after.hba_params.Good() && before.boot.Good() && after.boot.Good();
  const Twice parameters = {before.hba_params.record.info, after.hba_params.record.info};
  const Twice boot = {before.boot.record, after.boot.record};
  CompareAnswer(report, kParameters, before.hba_params, after.hba_params,
                [&](const auto& was, const auto& is) {
                  const auto own = [&](const HBAParamsInfo& record) {
                    return both ? WithoutDoubles(record, parameters, boot, Kept::kOtherBytes) : record;
                  };
                  CompareRecords(report, kParameters, ParameterFields(), own(was.info), own(is.info));
                  if (!SameContent(was.extra, is.extra))
                    report.AddOtherBytes("the second record of the HBA parameters");
                });
  CompareAnswer(report, kBoot, before.boot, after.boot,
                [&](const HBAParamsInfo& was, const HBAParamsInfo& is) {
                  const auto own = [&](const HBAParamsInfo& record) {
                    return both ? WithoutDoubles(record, boot, parameters, Kept::kBootFields) : record;
                  };
                  CompareRecords(report, kBoot, BootFields(), own(was), own(is));
                });
}

void CompareNvmeBoot(Report& report, const NVMeBootRecord& before, const NVMeBootRecord& after) {
  constexpr const char* kName = "the NVMe boot entries";
  for (std::size_t i = 0; i < std::size(before.entries); ++i) {
    CompareRecords(report, kName, NvmeBootEntryFields(), before.entries[i], after.entries[i],
                   "NVMe boot entry " + std::to_string(i + 1) + ": ");
  }
  NVMeBootRecord rest = before;
  std::memcpy(rest.entries, after.entries, sizeof rest.entries);
  if (!SameContent(rest, after)) report.AddOtherBytes(kName);
}

std::string ElementName(const SCMRStatisticsEntry& element) {
  const bool is_port = element.kind == StatisticsElementKind::kPhysicalPort;
  return (is_port ? "port " : "target ") + element.port_name.Text();
}

void CompareCongestionElements(Report& report, const std::vector<SCMRStatisticsEntry>& before,
                               const std::vector<SCMRStatisticsEntry>& after) {
  const auto key_of = [](const SCMRStatisticsEntry& element) {
    return std::tuple(element.kind != StatisticsElementKind::kPhysicalPort, element.kind,
                      element.port_name.Text());
  };
  const std::vector<Match> matches = MatchByKey(before, after, key_of);
  for (const Match& match : matches) {
    const SCMRStatisticsEntry& any = match.before ? before[*match.before] : after[*match.after];
    const std::string name = "Congestion statistics of " + ElementName(any);
    if (!match.after) {
      report.Add(name, "there", std::nullopt, name + " are gone.");
    } else if (!match.before) {
      report.Add(name, std::nullopt, "there", name + " are new.");
    } else {
      CompareRecords(report, "the c" + name.substr(1), CongestionStatisticsFields(), any, after[*match.after],
                     name + ": ");
    }
  }
  if (!IsReordered(matches)) return;
  report.Add("Congestion statistics", std::nullopt, std::nullopt,
             "The congestion statistics are listed in another order.");
}

void CompareCongestionStatistics(Report& report, const StatisticsList& before, const StatisticsList& after) {
  CompareCongestionElements(report, before.elements, after.elements);
  if (before.free_result == after.free_result) return;
  report.AddValue("Result of handing back the congestion statistics", view::ResultText(before.free_result),
                  view::ResultText(after.free_result));
}

// The module as the port has read it; of the one that was read anew only what is different there.
void CompareBothModules(Report& report, const recording::ProtocolRecording& before,
                        const recording::ProtocolRecording& after) {
  Report as_read;
  as_read.At() = report.At();
  Report anew = as_read;
  const auto compare_into = [](Report& into) {
    return [&into](const auto& was, const auto& is) { CompareModules(into, was, is); };
  };
  CompareAnswer(as_read, "the module", before.sfp, after.sfp, compare_into(as_read));
  CompareAnswer(anew, "the module", before.sfp_straight, after.sfp_straight, compare_into(anew));
  report.Take(as_read);
  report.TakeOthers(anew, as_read, "Read anew: ");
}

}  // namespace

void ComparePortAnswers(Report& report, const recording::ProtocolRecording& before,
                        const recording::ProtocolRecording& after) {
  CompareBothModules(report, before, after);
  CompareAnswer(report, "the board temperature", before.temperature, after.temperature,
                [&](const auto& was, const auto& is) { CompareTemperature(report, was, is); });
  CompareFields(report, "the flash component versions", before.flash_versions, after.flash_versions,
                FlashVersionFields());
  CompareFields(report, "the flash memo block", before.memo_block, after.memo_block, MemoBlockFields());
  CompareValue(report, "the personality", "Personality", before.personality, after.personality, Form::kCode,
               kPersonalities);
  CompareValue(report, "whether the personality may change", "Personality may change",
               before.personality_change, after.personality_change, Form::kCode, kNoYes);
  CompareFields(report, "the lockdown status", before.lockdown, after.lockdown, LockdownFields());
  CompareAnswer(report, "the Vital Product Data", before.vpd, after.vpd,
                [&](const auto& was, const auto& is) { CompareVpdBytes(report, was, is); });
  CompareAnswer(report, "the diagnostic parameters of the switch", before.rdp, after.rdp,
                [&](const auto& was, const auto& is) { CompareLinkParameters(report, was, is); });
  CompareConfiguration(report, before, after);
  CompareAnswer(report, "the NVMe boot entries", before.nvme_boot, after.nvme_boot,
                [&](const auto& was, const auto& is) { CompareNvmeBoot(report, was, is); });
  CompareFields(report, "the credit recovery", before.credit_recovery, after.credit_recovery,
                CreditRecoveryFields());
  CompareValue(report, "the forward error correction", "Forward error correction", before.error_correction,
               after.error_correction, Form::kCode, kOffOn);
  CompareAnswer(report, "the firmware statistics", before.firmware_statistics, after.firmware_statistics,
                [&](const auto& was, const auto& is) { CompareFirmwareStatistics(report, was, is); });
  CompareValue(report, "whether this is a mezzanine card", "Mezzanine card", before.mezzanine,
               after.mezzanine, Form::kCode, kNoYes);
  CompareValue(report, "the beacon", "Beacon", before.beacon, after.beacon, Form::kCode, kOffOn);
  CompareValue(report, "whether this is a diagnostic port", "Diagnostic port", before.diagnostic_port,
               after.diagnostic_port, Form::kCode, kNoYes);
  CompareValue(report, "whether the host NQN is registered", "Host NQN registered",
               before.host_nqn_registered, after.host_nqn_registered, Form::kCode, kNoYes);
  CompareValue(report, "whether congestion management is on", "Congestion management",
               before.congestion_enabled, after.congestion_enabled, Form::kCode, kOffOn);
  CompareFields(report, "the congestion profile", before.congestion_profile, after.congestion_profile,
                CongestionProfileFields());
  CompareAnswer(report, "the congestion statistics", before.congestion_statistics,
                after.congestion_statistics,
                [&](const auto& was, const auto& is) { CompareCongestionStatistics(report, was, is); });
}

void CompareTargetAnswers(Report& report, const recording::TargetRecording& before,
                          const recording::TargetRecording& after) {
  CompareValue(report, "the target's link speed", "Link speed", before.link_speed, after.link_speed,
               Form::kSpeed);
  CompareFields(report, "the target's statistics", before.statistics, after.statistics,
                TargetStatisticsFields());
}

void CompareHostAnswers(Report& report, const recording::HostRecording& before,
                        const recording::HostRecording& after) {
  CompareValue(report, "whether a reboot is required", "Reboot required", before.reboot_required,
               after.reboot_required, Form::kCode, kNoYes);
  CompareValue(report, "the boot mode", "Boot mode", before.boot_mode, after.boot_mode, Form::kCode,
               kBootModes);
}

}  // namespace diff
