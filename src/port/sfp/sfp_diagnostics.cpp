#include "port/sfp/sfp_diagnostics.h"

#include <algorithm>
#include <iterator>

#include "framework/inline_text.h"
#include "port/sfp/dmi_calculation.h"
#include "port/sfp/media_info.h"
#include "port/sfp/sfp_field_table.h"

// The arithmetic keeps its order and its single precision, as in the calculation.

namespace {

constexpr SfpNumber<std::uint8_t> kDiagMonitoringType =
    NumberNamed<std::uint8_t>(SfpFieldTable, "Diag Monitoring Type:");

// The table's rows that are numbers; 1 is the line of the status words.
enum DiagRow : std::uint32_t {
  kValueRow = 0,
  kHighAlarmRow = 2,
  kHighWarningRow = 3,
  kLowWarningRow = 4,
  kLowAlarmRow = 5,
};

// The number of a quantity's column.
constexpr std::uint32_t ColumnOf(DmiQuantity quantity) {
  return quantity + 1;
}

struct EntryOfRow {
  DiagRow row;
  DmiEntry entry;
  InlineText<13> label;
};

// In the order in which the rows are shown.
constexpr EntryOfRow kRows[] = {
    {kValueRow, kValue, "Value "},
    {kHighAlarmRow, kHighAlarm, "High Alarm "},
    {kHighWarningRow, kHighWarning, "High Warning "},
    {kLowWarningRow, kLowWarning, "Low Warning "},
    {kLowAlarmRow, kLowAlarm, "Low Alarm "},
};

float CalibratedRxPower(float r) {
  const float* const c = rxPowerArray;
  if (std::all_of(c, c + std::size(rxPowerArray), [](float coefficient) { return coefficient == 0.0F; })) {
    // An internally calibrated module shows four times the stored value, which is meant.
    return r + r + r + r;
  }
  // No powers of r, which is meant.
  return c[4] * r + c[3] * r + c[2] * r + c[1] * r + c[0];
}

float Calibrated(DmiQuantity quantity, float r) {
  if (quantity == kRxPower) return CalibratedRxPower(r);
  const float slope = slopeArray[quantity];
  return slope == 0.0F ? r : r * slope + offsetArray[quantity];
}

void ValuesLine(ReportText& text, const EntryOfRow& row) {
  const auto value = [&row](DmiQuantity quantity) {
    return static_cast<double>(GetDiagValue(row.row, ColumnOf(quantity)));
  };
  text.Line("\n%14s%10.2f%13.2f%12.2f%12.4f%12.4f\n", row.label.CString(), value(kTemperature),
            value(kVoltage), value(kTxBias), value(kTxPower), value(kRxPower));
}

void StatusLine(ReportText& text) {
  const auto status = [](DmiQuantity quantity) { return GetDiagStatus(ColumnOf(quantity)); };
  text.Line("\n%14s%10s%13s%12s%12s%12s\n", "Status ", status(kTemperature), status(kVoltage),
            status(kTxBias), status(kTxPower), status(kRxPower));
}

void DisplayTable(ReportText& text) {
  text.Line("\n%28s%10s%12s%12s%12s\n", "Temperature", "Voltage", "Tx Bias", "Tx Power", "Rx Power");
  text.Line("\n%24s%12s%12s%12s%12s\n", "(C)", "(V)", "(mA)", "(mW)", "(mW)");
  text.Line("\n%28s%10s%12s%12s%12s\n", "--------------", "-------", "-------", "--------", "--------");
  for (const EntryOfRow& row : kRows) {
    ValuesLine(text, row);
    if (row.row == kValueRow) StatusLine(text);
  }
}

}  // namespace

float GetDiagValue(std::uint32_t row, std::uint32_t quantity) {
  if (quantity < ColumnOf(kTemperature) || quantity > ColumnOf(kRxPower)) return 0.0F;
  const auto measured = static_cast<DmiQuantity>(quantity - ColumnOf(kTemperature));
  for (const EntryOfRow& known : kRows) {
    if (known.row == row) return Calibrated(measured, ValueEntry(measured, known.entry));
  }
  return 0.0F;
}

const char* GetDiagStatus(std::uint32_t quantity) {
  const float value = GetDiagValue(kValueRow, quantity);
  // All but receive power have the Low Warning as their low fault threshold and no low-side warning, which is
  // meant.
  const bool has_low_warning = quantity == ColumnOf(kRxPower);
  const DiagRow lowest = has_low_warning ? kLowAlarmRow : kLowWarningRow;
  if (value >= GetDiagValue(kHighAlarmRow, quantity) || GetDiagValue(lowest, quantity) >= value)
    return "Fault";
  if (value >= GetDiagValue(kHighWarningRow, quantity)) return "Warning";
  return has_low_warning && GetDiagValue(kLowWarningRow, quantity) >= value ? "Warning" : "Normal";
}

void DisplaySfpDiagnostics(ReportText& text, SfpImage image, bool show_installed) {
  DisplayMediaInfo(text, image, show_installed);
  if (!IsQsfp(image) && (image.Read(kDiagMonitoringType) & kDiagnosticsImplemented) != 0) DisplayTable(text);
}
