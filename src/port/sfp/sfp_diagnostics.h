// The table of measured values: calibrated numbers and status words, and the report's part that shows them.
#pragma once

#include <cstdint>

#include "framework/report_text.h"
#include "port/sfp/sfp_image.h"

// One number of the last calculation, with the module's calibration applied. Rows: 0 value, 2 High Alarm, 3
// High Warning, 4 Low Warning, 5 Low Alarm. Quantities: 1 temperature, 2 voltage, 3 transmit bias, 4 transmit
// power, 5 receive power. 0 for any other row or quantity.
float GetDiagValue(std::uint32_t row, std::uint32_t quantity);

// "Fault", "Warning" or "Normal": where the quantity's value is among its thresholds.
const char* GetDiagStatus(std::uint32_t quantity);

// Appends the summary of the module and, for an SFP module with diagnostics, the table of measured values.
// CalculateDetailsDMIData must have run on the same image.
void DisplaySfpDiagnostics(ReportText& text, SfpImage image, bool show_installed);
