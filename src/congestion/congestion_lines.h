// The lines that the congestion reports of ports and targets have in common.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

#include "framework/device_library/congestion_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/report_text.h"

// The lines that begin a port's report: its names, address and state.
void PortLines(ReportText& text, const FCProtocolEntry& fc);

// A bit of a notification mask and its words.
struct NotificationWords {
  std::uint32_t bit;
  const char* words;
};

// "      Congestion Notification: " and the words of the bits that are set. A mask without any bit is "None";
// one of unknown bits alone deliberately leaves a line without label.
void NotificationLine(ReportText& text, std::uint16_t mask, std::span<const NotificationWords> table);

// "      label: number (ms)".
void MillisecondsLine(ReportText& text, const char* label, std::uint32_t value);

// "      label: Yes" or "No".
void YesNoLine(ReportText& text, const char* label, bool value);

// The head of a section: its lines between two rulers.
void SectionHead(ReportText& text, std::initializer_list<const char*> lines);

// A counter of the statistics list and its label.
struct WideCounter {
  const char* label;
  std::uint64_t SCMRStatisticsEntry::*value;
};

// One line for each counter, in the order of the table.
void CounterLines(ReportText& text, std::span<const WideCounter> table, const SCMRStatisticsEntry& entry);

// The sections of the second generation's statistics. The order of the counters is deliberately not that of
// the record.
void MitigationSection(ReportText& text, std::span<const WideCounter> ahead,
                       const SCMRStatisticsEntry& entry);
void LinkSection(ReportText& text, const SCMRStatisticsEntry& entry);
void CongestionEventLines(ReportText& text, const SCMRStatisticsEntry& entry);
