#include "diag/pattern_passes.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "diag/diagnostic_words.h"
#include "framework/inline_text.h"
#include "framework/words.h"

namespace {

struct ActionWord {
  InlineText<6> word;
  OnErrorAction action;
};

constexpr ActionWord kActions[] = {
    {"Ignore", OnErrorAction::kIgnore},
    {"Stop", OnErrorAction::kStop},
    {"Loop", OnErrorAction::kLoop},
};

// An unknown word is no error: it means to ignore.
OnErrorAction ReadAction(std::string_view word) {
  for (const ActionWord& row : kActions) {
    if (EqualNoCase(word, row.word)) return row.action;
  }
  return OnErrorAction::kIgnore;
}

struct PatternWord {
  InlineText<8> word;
  DataPatternKind kind;
};

// The word of a fixed pattern is the pattern itself.
constexpr PatternWord kPatterns[] = {
    {"Random", DataPatternKind::kRandom},  {"CRPAT", DataPatternKind::kCrpat},
    {"CJTPAT", DataPatternKind::kCjtpat},  {"CSPAT", DataPatternKind::kCspat},
    {"Custom", DataPatternKind::kCustom},  {"00000000", DataPatternKind::kFixed},
    {"01010101", DataPatternKind::kFixed}, {"01011010", DataPatternKind::kFixed},
    {"10100101", DataPatternKind::kFixed}, {"10101010", DataPatternKind::kFixed},
    {"11111111", DataPatternKind::kFixed},
};

// Reads "a-b-c-d-e-f-g-h": eight characters of any kind with hyphens between them, whatever follows them.
bool ReadCustomPattern(const std::string& value, char (&pattern)[8]) {
  char text[2 * sizeof pattern] = {};  // what the value lacks is a null character
  value.copy(text, sizeof text - 1);
  for (std::size_t i = 1; i + 1 < sizeof text; i += 2) {
    if (text[i] != '-') return false;
  }
  for (std::size_t i = 0; i < sizeof pattern; ++i) pattern[i] = text[2 * i];
  return true;
}

}  // namespace

void SetTestCount(DiagTestRequest& request, std::uint32_t count) {
  request.test_count = count;
  request.test_count_again = count;
}

StatusCode ReadPassWords(const CommandRun& run, const PassLimits& limits, DiagTestRequest& request,
                         std::uint32_t& increment) {
  if (const StatusCode status =
          ReadCount(run, kIncrementWord, "test increment", limits.max_increment, increment);
      status != kSuccess) {
    return status;
  }
  const auto size =
      std::find(limits.data_sizes.begin(), limits.data_sizes.end(), ReadDecimal(run.words, kDataSizeWord));
  if (size == limits.data_sizes.end()) return RefuseWord(run, kDataSizeWord, "data size");
  request.data_size = *size;
  request.on_error = ReadAction(WordAt(run.words, kOnErrorWord));
  return kSuccess;
}

StatusCode ReadDataPattern(const CommandRun& run, std::size_t index, DiagTestRequest& request) {
  const std::string_view word = WordAt(run.words, index);
  const auto* const row =
      std::find_if(std::begin(kPatterns), std::end(kPatterns),
                   [word](const PatternWord& pattern) { return EqualNoCase(word, pattern.word); });
  // An unknown word is no error: it means random data.
  request.pattern_kind = row == std::end(kPatterns) ? DataPatternKind::kRandom : row->kind;
  if (request.pattern_kind == DataPatternKind::kFixed) {
    std::memcpy(request.pattern, row->word, sizeof request.pattern);
  }
  if (request.pattern_kind != DataPatternKind::kCustom) return kSuccess;

  Words options = run.words;
  std::string value;
  // A missing option is no error: the pattern is empty.
  if (!GetOptionValue(options, "--data-pattern", "-d", value)) return kSuccess;
  if (ReadCustomPattern(value, request.pattern)) return kSuccess;
  return run.Refuse(kBadCustomPattern, "Invalid data pattern %s", value.c_str());
}

StatusCode CheckMaintenanceMode(const CommandRun& run, const FCProtocolEntry& fc) {
  return IsInMaintenanceMode(fc) ? run.Refuse(kMaintenanceMode, "Port is in maintenance mode") : kSuccess;
}

bool CountPass(bool succeeded, OnErrorAction on_error, PassCounters& counters) {
  ++(succeeded ? counters.succeeded : counters.failed);
  if (!succeeded && on_error == OnErrorAction::kStop) return false;
  ++counters.iteration;
  return true;
}

void WriteCounters(Serializer& out, const PassCounters& counters) {
  out.WriteIntField("Test Iteration", counters.iteration, kUnsigned32);
  out.WriteIntField("Success Count", counters.succeeded, kUnsigned32);
  out.WriteIntField("Failure Count", counters.failed, kUnsigned32);
}
