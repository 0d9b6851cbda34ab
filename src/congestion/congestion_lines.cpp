#include "congestion/congestion_lines.h"

#include <string>

#include "congestion/vocabulary.h"
#include "framework/report_lines.h"

namespace {

constexpr const char* kRuler = "-----------------------------------";

using Entry = SCMRStatisticsEntry;

constexpr WideCounter kMitigation[] = {
    {"Cleared Congestion Count", &Entry::cleared_congestion}, {"Throttled Up Count", &Entry::throttled_up},
    {"Throttled Down Count", &Entry::throttled_down},         {"Bottomed Out Count", &Entry::bottomed_out},
    {"Returned Busy Count", &Entry::returned_busy},
};

constexpr WideCounter kLinkEvents[] = {
    {"Link Failure Count", &Entry::link_failure},
    {"Link Unknown Event Count", &Entry::link_unknown_event},
    {"Loss Of Sync Count", &Entry::loss_of_sync},
    {"Loss Of Signal Count", &Entry::loss_of_signal},
    {"Link Device Specific Event Count", &Entry::link_device_specific_event},
    {"Primitive Sequence Protocol Error Count", &Entry::primitive_sequence_error},
    {"Invalid Transmission Word Count", &Entry::invalid_transmission_word},
    {"Invalid CRC Count", &Entry::invalid_crc},
    {"Link Uncorrectable FEC Count", &Entry::link_uncorrectable_fec},
};

constexpr WideCounter kCongestionEvents[] = {
    {"Congestion Clear Count", &Entry::congestion_clear},
    {"Congestion Lost Credit Count", &Entry::congestion_lost_credit},
    {"Congestion Credit Stall Count", &Entry::congestion_credit_stall},
    {"Congestion Oversubscription Count", &Entry::congestion_oversubscription},
    {"Congestion Device Specific Count", &Entry::congestion_device_specific},
};

}  // namespace

void PortLines(ReportText& text, const FCProtocolEntry& fc) {
  FirstNameLine(text, "Node Name", fc.node_name);
  NameLine(text, "Port Name", fc.port_name);
  PortIdLine(text, "Port Id", fc.port_id);
  TextLine(text, "Port State", PortStateText(fc));
}

void NotificationLine(ReportText& text, std::uint16_t mask, std::span<const NotificationWords> table) {
  std::string words = mask == 0 ? "None" : "";
  for (const NotificationWords& row : table) {
    if ((mask & row.bit) != 0) words += row.words;
  }
  if (words.empty()) return text.Line("\n");
  TextLine(text, "Congestion Notification", words);
}

void MillisecondsLine(ReportText& text, const char* label, std::uint32_t value) {
  text.Line("      %s: %u (ms)\n", label, value);
}

void YesNoLine(ReportText& text, const char* label, bool value) {
  TextLine(text, label, value ? "Yes" : "No");
}

void SectionHead(ReportText& text, std::initializer_list<const char*> lines) {
  text.Line("      %s\n", kRuler);
  for (const char* const line : lines) text.Line("      %s\n", line);
  text.Line("      %s\n", kRuler);
}

void CounterLines(ReportText& text, std::span<const WideCounter> table, const SCMRStatisticsEntry& entry) {
  for (const WideCounter& row : table) WideNumberLine(text, row.label, entry.*row.value);
}

void MitigationSection(ReportText& text, std::span<const WideCounter> ahead,
                       const SCMRStatisticsEntry& entry) {
  SectionHead(text, {"Congestion Mitigation"});
  CounterLines(text, ahead, entry);
  CounterLines(text, kMitigation, entry);
}

void LinkSection(ReportText& text, const SCMRStatisticsEntry& entry) {
  SectionHead(text, {"Rx Fabric Performance Impact ", "Notifications"});  // deliberately with the blank
  CounterLines(text, kLinkEvents, entry);
}

void CongestionEventLines(ReportText& text, const SCMRStatisticsEntry& entry) {
  CounterLines(text, kCongestionEvents, entry);
}
