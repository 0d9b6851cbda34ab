#include "congestion/congestion_lines.h"

#include <initializer_list>
#include <optional>
#include <string>

#include "congestion/vocabulary.h"
#include "framework/inline_text.h"

namespace {

constexpr const char* kRuler = "-----------------------------------";

using Entry = SCMRStatisticsEntry;

struct ListedCounter {
  InlineText<39> label;
  std::uint64_t Entry::*value;
  std::optional<StatisticsOwner> only = std::nullopt;  // empty: ports and targets
};

// The order is that of the report, which is not that of the record.

constexpr ListedCounter kMitigation[] = {
    {"Congestion Alarm Count", &Entry::congestion_alarms, StatisticsOwner::kPort},
    {"Congestion Warning Count", &Entry::congestion_warnings, StatisticsOwner::kPort},
    {"Cleared Congestion Count", &Entry::cleared_congestion},
    {"Throttled Up Count", &Entry::throttled_up},
    {"Throttled Down Count", &Entry::throttled_down},
    {"Bottomed Out Count", &Entry::bottomed_out},
    {"Returned Busy Count", &Entry::returned_busy},
};

constexpr ListedCounter kNotifications[] = {
    {"Link Failure Count", &Entry::link_failure},
    {"Link Unknown Event Count", &Entry::link_unknown_event},
    {"Loss Of Sync Count", &Entry::loss_of_sync},
    {"Loss Of Signal Count", &Entry::loss_of_signal},
    {"Link Device Specific Event Count", &Entry::link_device_specific_event},
    {"Primitive Sequence Protocol Error Count", &Entry::primitive_sequence_error},
    {"Invalid Transmission Word Count", &Entry::invalid_transmission_word},
    {"Invalid CRC Count", &Entry::invalid_crc},
    {"Link Uncorrectable FEC Count", &Entry::link_uncorrectable_fec},
    {"Delivery Failure Unknown Count", &Entry::delivery_failure_unknown, StatisticsOwner::kPort},
    {"Delivery Timeout Count", &Entry::delivery_timeout, StatisticsOwner::kPort},
    {"Delivery Unable To Route Count", &Entry::delivery_unable_to_route, StatisticsOwner::kPort},
    {"Delivery Failure Device Specific Count", &Entry::delivery_failure_device_specific,
     StatisticsOwner::kPort},
    {"Congestion Clear Count", &Entry::congestion_clear},
    {"Congestion Lost Credit Count", &Entry::congestion_lost_credit},
    {"Congestion Credit Stall Count", &Entry::congestion_credit_stall},
    {"Congestion Oversubscription Count", &Entry::congestion_oversubscription},
    {"Congestion Device Specific Count", &Entry::congestion_device_specific},
    {"PUN Count", &Entry::pun, StatisticsOwner::kTarget},
};

// One section: the lines of its title between two rulers, and the counters that the owner has.
void Section(ReportText& text, std::initializer_list<const char*> title,
             std::span<const ListedCounter> counters, const Entry& entry, StatisticsOwner owner) {
  text.Line("      %s\n", kRuler);
  for (const char* const line : title) text.Line("      %s\n", line);
  text.Line("      %s\n", kRuler);
  for (const ListedCounter& row : counters) {
    if (row.only.value_or(owner) == owner) WideNumberLine(text, row.label, entry.*row.value);
  }
}

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

void StatisticsLines(ReportText& text, const SCMRStatisticsEntry& entry, StatisticsOwner owner) {
  Section(text, {"Congestion Mitigation"}, kMitigation, entry, owner);
  // Intended: a blank ends the first line.
  Section(text, {"Rx Fabric Performance Impact ", "Notifications"}, kNotifications, entry, owner);
}
