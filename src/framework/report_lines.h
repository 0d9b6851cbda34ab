// The lines that reports have in common. All but those that begin a report start with six blanks, so that in
// text form they line up under the first one, which stands behind "Data: ".
#pragma once

#include <cstdint>
#include <string_view>

#include "framework/device_library/flash_records.h"
#include "framework/device_library/port_id.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"
#include "framework/report_text.h"

// "label: text", which begins a report.
void FirstTextLine(ReportText& text, const char* label, std::string_view value);

// "      label: text" and, for an empty text in the second form, "NA".
void TextLine(ReportText& text, const char* label, std::string_view value);
void TextOrNaLine(ReportText& text, const char* label, std::string_view value);

// "      label: number", unsigned decimal.
void NumberLine(ReportText& text, const char* label, std::uint32_t value);
void WideNumberLine(ReportText& text, const char* label, std::uint64_t value);

// "      label: true" or "false".
void FlagLine(ReportText& text, const char* label, bool flag);

// A World Wide Name as eight hexadecimal octets; the first form begins a report.
void FirstNameLine(ReportText& text, const char* label, const WorldWideName& name);
void NameLine(ReportText& text, const char* label, const WorldWideName& name);

// "      label: major.minor.sub", or "NA" for a version of all zeros; in the second form, for components that
// read as all ones where there is none, for all ones too.
void VersionLine(ReportText& text, const char* label, const ComponentVersion& version);
void VersionOrBlankLine(ReportText& text, const char* label, const ComponentVersion& version);

// A Fibre Channel address identifier as three hexadecimal octets.
void PortIdLine(ReportText& text, const char* label, const PortId& port_id);

// A host identifier as hexadecimal digits without separators, or "NA" for one of all zeros.
void HostIdLine(ReportText& text, const char* label, const std::uint8_t (&id)[16]);

// The lines that begin a target's report: its names, address and number.
void TargetLines(ReportText& text, const TargetEntry& target);
