// What a diagnostic port's link test found, as a report: phases, and for the second test interface the
// powers.
#pragma once

#include <cstdint>

#include "framework/device_library/diag_records.h"
#include "framework/report_text.h"

// Label of a phase status byte.
const char* DPortResultLabel(std::uint8_t status);

// A power in units of 0.1 microwatt as dBm, in single precision; negative infinity for 0.
float PowerToDbm(std::uint16_t raw);

// The same, but 0.0 for no power at all.
float PowerToDbmOrZero(std::uint16_t raw);

// The power in dB that a cable of this length may cost.
double AllowablePowerLoss(std::uint32_t meters);

// Writes all lines of the report. Powers, latency and distance are shown only with `is_v2`: the second test
// interface made the record.
void WriteDPortReport(ReportText& text, const DPortResultRecord& record, bool is_v2);
