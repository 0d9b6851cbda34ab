#include "port/sfp/sfp_diagnostics.h"

#include <algorithm>
#include <iterator>

#include "port/sfp/dmi_calculation.h"
#include "port/sfp/field_text.h"
#include "port/sfp/media_info.h"

// The arithmetic keeps its order and its single precision, as in the calculation.

namespace {

// Numbers of the table's rows; 1 is the line of the status words.
enum DiagRow : std::uint32_t {
  kValueRow = 0,
  kHighAlarmRow = 2,
  kHighWarningRow = 3,
  kLowWarningRow = 4,
  kLowAlarmRow = 5,
};

constexpr std::uint32_t kRxPowerQuantity = kRxPower + 1;

constexpr std::uint8_t kDiagnosticsImplemented = 0x40;

struct EntryOfRow {
  DiagRow row;
  DmiEntry entry;
  const char* label;
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
    // An internally calibrated module deliberately shows four times the stored value.
    return r + r + r + r;
  }
  return c[4] * r + c[3] * r + c[2] * r + c[1] * r + c[0];
}

float Calibrated(std::uint32_t quantity, float r) {
  if (quantity == kRxPowerQuantity) return CalibratedRxPower(r);
  const float slope = slopeArray[quantity - 1];
  if (slope == 0.0F) return r;
  return r * slope + offsetArray[quantity - 1];
}

void ValuesLine(ReportText& text, const EntryOfRow& row) {
  const auto value = [&row](std::uint32_t quantity) {
    return static_cast<double>(GetDiagValue(row.row, quantity));
  };
  text.Line("\n%14s%10.2f%13.2f%12.2f%12.4f%12.4f\n", row.label, value(1), value(2), value(3), value(4),
            value(5));
}

void StatusLine(ReportText& text) {
  text.Line("\n%14s%10s%13s%12s%12s%12s\n", "Status ", GetDiagStatus(1), GetDiagStatus(2), GetDiagStatus(3),
            GetDiagStatus(4), GetDiagStatus(5));
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
  if (quantity < 1 || quantity > kQuantities) return 0.0F;
  for (const EntryOfRow& known : kRows) {
    if (known.row == row)
      return Calibrated(quantity, valueArray[(quantity - 1) * kEntriesPerQuantity + known.entry]);
  }
  return 0.0F;
}

const char* GetDiagStatus(std::uint32_t quantity) {
  const float value = GetDiagValue(kValueRow, quantity);
  // All but receive power deliberately treat the low warning as the fault threshold and have no low-side
  // warning.
  const bool has_low_warning = quantity == kRxPowerQuantity;
  const DiagRow lowest = has_low_warning ? kLowAlarmRow : kLowWarningRow;
  if (value >= GetDiagValue(kHighAlarmRow, quantity) || GetDiagValue(lowest, quantity) >= value)
    return "Fault";
  if (value >= GetDiagValue(kHighWarningRow, quantity)) return "Warning";
  return has_low_warning && GetDiagValue(kLowWarningRow, quantity) >= value ? "Warning" : "Normal";
}

void DisplaySfpDiagnostics(ReportText& text, SfpImage image, bool show_installed) {
  DisplayMediaInfo(text, image, show_installed);
  if (IsQsfp(image) || !GetSFPTableBitValue(image, "Diag Monitoring Type:", kDiagnosticsImplemented)) return;
  DisplayTable(text);
}
