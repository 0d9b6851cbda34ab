// Takes the text of a report apart, line by line.
//
// Most lines are "label: value". Around them are headings, lines that belong to the label above them, and the
// table of a module's measurements. Blank lines and rulers have no line of their own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/json/plain_number.h"

namespace zfc_json {

// A line, or a cell of the table. Texts are without the blanks around them.
struct ReportLine {
  std::string_view section;  // the heading above; empty for none
  std::string_view group;    // the label, or the table's column, that the line belongs to; empty for none
  std::string_view label;    // empty for a line that is no label with a value
  std::string_view value;    // or what such a line has instead
  PlainNumber number;
};

class ReportReader {
 public:
  explicit ReportReader(std::string_view text) : rest_(text) {}

  // The next line; false at the end of the report. Its texts are valid until the next call.
  bool Next(ReportLine& line);

 private:
  static constexpr std::size_t kColumns = 5;

  bool TakeLine(std::string_view& line);
  bool TakeHeading(std::string_view line);
  bool TakeTableRow(std::string_view line);
  bool TakeLabel(std::string_view line, ReportLine& out);
  void TakeDump(std::string_view& value);
  void NextCell(ReportLine& line);
  void BeginSection(std::string_view heading);

  std::string_view rest_;
  std::string section_;
  std::string dump_;
  std::string_view group_;  // the label that lines below it can belong to

  bool in_table_ = false;
  std::string_view row_;  // the label of the table's row, and its cells
  std::string_view cells_[kColumns];
  std::size_t next_cell_ = kColumns;
};

}  // namespace zfc_json
