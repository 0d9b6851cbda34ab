// The lines that the congestion reports of ports and targets have in common.
#pragma once

#include <cstdint>
#include <span>

#include "framework/device_library/congestion_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/inline_text.h"
#include "framework/report_lines.h"
#include "framework/report_text.h"

// The lines that begin a port's report: its names, address and state.
void PortLines(ReportText& text, const FCProtocolEntry& fc);

// A bit of a notification mask and its words.
struct NotificationWords {
  std::uint32_t bit;
  InlineText<40> words;
};

// "      Congestion Notification: " and the words of the bits that are set. A mask without any bit is "None";
// one of unknown bits alone leaves a line without label, as meant.
void NotificationLine(ReportText& text, std::uint16_t mask, std::span<const NotificationWords> table);

// "      label: number (ms)".
void MillisecondsLine(ReportText& text, const char* label, std::uint32_t value);

// "      label: Yes" or "No".
void YesNoLine(ReportText& text, const char* label, bool value);

// A counter of a record and its label.
template <class Record, class Number>
struct Counter {
  InlineText<39> label;
  Number Record::*value;
};

// One line for each counter, in the order of the table.
template <class Table, class Record>
void CounterLines(ReportText& text, const Table& table, const Record& record) {
  for (const auto& row : table) WideNumberLine(text, row.label, record.*row.value);
}

// Whose counters an element of the statistics list holds: each kind shows some that the other lacks.
enum class StatisticsOwner : std::uint8_t { kPort, kTarget };

// The sections of the second generation's statistics.
void StatisticsLines(ReportText& text, const SCMRStatisticsEntry& entry, StatisticsOwner owner);
