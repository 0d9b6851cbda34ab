#include "tools/json/report_reader.h"

#include <algorithm>
#include <iterator>

namespace zfc_json {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLabelEnd = ": ";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find('\n'));
}

// The text after its first line.
std::string_view AfterLine(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
}

// A line of hyphens; the one below the table's head has blanks between them.
bool IsRuler(std::string_view line) {
  constexpr std::string_view kLeast = "----------";
  return line.starts_with(kLeast) && line.find_first_not_of("- ") == std::string_view::npos;
}

// The bytes that continue a dump: "0x00 0x1f".
bool IsDump(std::string_view line) {
  return line.starts_with("0x") && line.find_first_not_of("0123456789abcdefx ") == std::string_view::npos;
}

struct Column {
  std::string_view name;
  std::string_view unit;
};

// The table of a module's measurements: its columns, and its rows of numbers and of words.
constexpr Column kTable[] = {
    {"Temperature", "C"}, {"Voltage", "V"}, {"Tx Bias", "mA"}, {"Tx Power", "mW"}, {"Rx Power", "mW"},
};
constexpr std::string_view kTableUnits[] = {"(C)", "(V)", "(mA)", "(mW)", "(mW)"};
constexpr std::string_view kTableRows[] = {"Value",        "Status",      "High Alarm",
                                           "High Warning", "Low Warning", "Low Alarm"};

// Takes the text up to the next run of two blanks off the front of `line`.
std::string_view TakeCell(std::string_view& line) {
  const std::size_t end = std::min(line.find("  "), line.size());
  const std::string_view cell = line.substr(0, end);
  line = WithoutBlanks(line.substr(end));
  return cell;
}

bool IsTableHead(std::string_view line) {
  const bool named = std::all_of(std::begin(kTable), std::end(kTable),
                                 [&line](const Column& column) { return TakeCell(line) == column.name; });
  return named && line.empty();
}

bool IsTableUnits(std::string_view line) {
  const bool named = std::all_of(std::begin(kTableUnits), std::end(kTableUnits),
                                 [&line](std::string_view unit) { return TakeCell(line) == unit; });
  return named && line.empty();
}

}  // namespace

bool ReportReader::Next(ReportLine& line) {
  line = {};
  std::string_view whole;
  while (next_cell_ == kColumns) {
    if (!TakeLine(whole)) return false;
    const std::string_view text = WithoutBlanks(whole);
    if (text.empty() || TakeHeading(whole)) continue;
    if (IsTableHead(text)) {
      in_table_ = true;
      continue;
    }
    if (in_table_ && IsTableUnits(text)) continue;
    if (in_table_ && TakeTableRow(text)) break;
    line.section = section_;
    if (TakeLabel(whole, line)) return true;
    line.group = group_;
    line.value = text;
    return true;
  }
  NextCell(line);
  return true;
}

bool ReportReader::TakeLine(std::string_view& line) {
  if (rest_.empty()) return false;
  line = FirstLine(rest_);
  rest_ = AfterLine(rest_);
  return true;
}

void ReportReader::BeginSection(std::string_view heading) {
  section_ = heading;
  group_ = {};
  in_table_ = false;
}

// A heading is between two rulers, at most two lines of it; or a line that ends in a colon; or one without a
// colon that nothing indents. A ruler that no heading follows is passed over.
bool ReportReader::TakeHeading(std::string_view line) {
  const std::string_view text = WithoutBlanks(line);
  if (IsRuler(text)) {
    const std::string_view first = WithoutBlanks(FirstLine(rest_));
    std::string_view after = AfterLine(rest_);
    const std::string_view second = WithoutBlanks(FirstLine(after));
    if (first.empty() || IsRuler(first)) return true;
    if (IsRuler(second)) {
      BeginSection(first);
      rest_ = AfterLine(after);
      return true;
    }
    after = AfterLine(after);
    if (!second.empty() && IsRuler(WithoutBlanks(FirstLine(after)))) {
      BeginSection(first);
      section_.append(" ").append(second);
      rest_ = AfterLine(after);
    }
    return true;
  }
  if (text.find(kLabelEnd) != std::string_view::npos) return false;
  if (line.ends_with(':')) {
    BeginSection(text.substr(0, text.size() - 1));
    return true;
  }
  if (text.find(':') != std::string_view::npos || kBlanks.find(line[0]) != std::string_view::npos)
    return false;
  BeginSection(text);
  return true;
}

// "Label: value", "Label: -Flag: 0x1", and the lines below such a label: "-Flag: 0x0", or after a tab.
bool ReportReader::TakeLabel(std::string_view line, ReportLine& out) {
  const std::size_t first = line.find_first_not_of(kBlanks);
  const std::size_t end = line.find(kLabelEnd, first);
  if (end == std::string_view::npos || end == first) return false;
  out.label = WithoutBlanks(line.substr(first, end - first));
  out.value = WithoutBlanks(line.substr(end + kLabelEnd.size()));

  constexpr std::string_view kFlagValues[] = {": 0x0", ": 0x1"};
  const auto is_flag = [&](std::string_view text) {
    return text.starts_with('-') &&
           std::any_of(std::begin(kFlagValues), std::end(kFlagValues),
                       [text](std::string_view value) { return text.ends_with(value); });
  };
  std::string_view flag = WithoutBlanks(line.substr(first));
  if (is_flag(out.value)) {
    group_ = out.label;
    flag = out.value;
  }
  if (is_flag(flag)) {
    out.group = group_;
    out.label = flag.substr(1, flag.find(kLabelEnd) - 1);
    out.value = flag.substr(flag.find(kLabelEnd) + kLabelEnd.size());
  } else if (line[0] == '\t') {
    out.group = group_;
  } else {
    group_ = out.label;
    TakeDump(out.value);
  }
  out.number = PlainNumberOf(out.label, out.value);
  return true;
}

// Joins a dump with the lines that continue it.
void ReportReader::TakeDump(std::string_view& value) {
  if (!IsDump(value) || rest_.empty() || rest_[0] != ' ') return;
  dump_ = value;
  while (!rest_.empty() && IsDump(WithoutBlanks(FirstLine(rest_)))) {
    dump_.append(" ").append(WithoutBlanks(FirstLine(rest_)));
    rest_ = AfterLine(rest_);
  }
  value = dump_;
}

bool ReportReader::TakeTableRow(std::string_view line) {
  const std::string_view row = TakeCell(line);
  if (std::find(std::begin(kTableRows), std::end(kTableRows), row) == std::end(kTableRows)) return false;
  for (std::string_view& cell : cells_) {
    if (line.empty()) return false;
    cell = TakeCell(line);
  }
  if (!line.empty()) return false;
  row_ = row;
  next_cell_ = 0;
  return true;
}

void ReportReader::NextCell(ReportLine& line) {
  const Column& column = kTable[next_cell_];
  line.section = section_;
  line.group = column.name;
  line.label = row_;
  line.value = cells_[next_cell_];
  line.number = PlainNumberOf({}, line.value);
  if (!line.number.number.empty()) line.number.unit = column.unit;
  ++next_cell_;
}

}  // namespace zfc_json
