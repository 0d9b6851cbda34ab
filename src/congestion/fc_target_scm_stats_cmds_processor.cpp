#include "congestion/fc_target_scm_stats_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/statistics_list.h"
#include "congestion/target_statistics.h"
#include "congestion/vocabulary.h"
#include "discovery/host_walk.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCTargetSCMStatsCmdsProcessor";

constexpr ReportFrame kFrame = {"TargetVCLMStatistics", "Target VCLM Stats", "TargetVCLMStatsList"};
constexpr std::size_t kReportBytes = 8192;

constexpr GuardCheck kGuard[] = {GuardCheck::kFamily, GuardCheck::kAnyGeneration, GuardCheck::kPhysicalPort,
                                 GuardCheck::kEnabledOneStatus};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, VCLM settings read error"},
    kHostNotFound,
    kNotSupportedBySwitch,
    kFileNotFound,
    kAdapterNotFound,
    kFeatureNotSupported,
    kStatisticsReadError,
    {kStatisticsClearError, "Failed, Statistics list clear error"},
    kMemoryError,
    kDriverLacksFeature,
    kVirtualPort,
    kFeatureDisabled,
};

constexpr NotificationWords kNotifications[] = {
    {2, "Delivery, "}, {4, "Link Integrity, "}, {8, "Peer Congestion"}};

constexpr WideCounter kPeerUnavailable[] = {{"PUN Count", &SCMRStatisticsEntry::pun}};

// A counter of the first generation and its label.
struct Counter {
  const char* label;
  std::uint32_t TargetPortStatistics::*value;
};

constexpr Counter kLinkEvents[] = {
    {"Link Failure Count", &TargetPortStatistics::link_failure},
    {"Link Unknown Event Count", &TargetPortStatistics::link_unknown_event},
    {"Loss Of Sync Count", &TargetPortStatistics::loss_of_sync},
    {"Loss Of Signal Count", &TargetPortStatistics::loss_of_signal},
    {"Link Device Specific Event Count", &TargetPortStatistics::link_device_specific_event},
    {"Primitive Sequence Protocol Error Count", &TargetPortStatistics::primitive_sequence_error},
    {"Invalid Transmission Word Count", &TargetPortStatistics::invalid_transmission_word},
    {"Invalid CRC Count", &TargetPortStatistics::invalid_crc},
};

constexpr Counter kDeliveryFailures[] = {
    {"Delivery Failure Unknown Count", &TargetPortStatistics::delivery_failure_unknown},
    {"Delivery Timeout Count", &TargetPortStatistics::delivery_timeout},
    {"Delivery Unable To Route Count", &TargetPortStatistics::delivery_unable_to_route},
    {"Delivery Failure Device Specific Count", &TargetPortStatistics::delivery_failure_device_specific},
};

constexpr Counter kPeerCongestion[] = {
    {"Peer Congestion Clear Count", &TargetPortStatistics::peer_congestion_clear},
    {"Peer Congestion Lost Credit Count", &TargetPortStatistics::peer_congestion_lost_credit},
    {"Peer Congestion Credit Stall Count", &TargetPortStatistics::peer_congestion_credit_stall},
    {"Peer Congestion Oversubscription Count", &TargetPortStatistics::peer_congestion_oversubscription},
    {"Peer Congestion Device Specific Count", &TargetPortStatistics::peer_congestion_device_specific},
};

void CounterLines(ReportText& text, std::span<const Counter> table, const TargetPortStatistics& statistics) {
  for (const Counter& row : table) NumberLine(text, row.label, statistics.*row.value);
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayTargetSCMStats(Serializer& out, const TargetEntry& target,
                                 const TargetPortStatistics& statistics, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  TargetLines(text, target);
  NotificationLine(text, target.congestion_notifications, kNotifications);
  TextLine(text, "Link Event Type", LinkEventText(target.link_event_type));
  MillisecondsLine(text, "Link Event Threshold", target.link_event_threshold_ms);
  CounterLines(text, kLinkEvents, statistics);
  TextLine(text, "Delivery Notification", TargetDeliveryReasonText(target.delivery_reason));
  CounterLines(text, kDeliveryFailures, statistics);
  TextLine(text, "Peer Congestion Event Type", CongestionEventText(target.peer_congestion_event_type));
  MillisecondsLine(text, "Peer Congestion Event Period", target.peer_congestion_event_period_ms);
  CounterLines(text, kPeerCongestion, statistics);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

// The element with both names of the target. The first one is the port's own and is deliberately skipped.
const SCMRStatisticsEntry* TargetElement(const SCMRStatisticsEntry& first, const TargetEntry& target) {
  for (const SCMRStatisticsEntry& entry : Chain<SCMRStatisticsEntry>(first.next)) {
    if (entry.node_name == target.node_name && entry.port_name == target.port_name) {
      return &entry;
    }
  }
  return nullptr;
}

// Deliberately without the signals and the delivery failures that a port shows.
StatusCode DisplayTargetSCMStatsV2(Serializer& out, const TargetEntry& target,
                                   const SCMRStatisticsEntry& list, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  TargetLines(text, target);
  if (const SCMRStatisticsEntry* const entry = TargetElement(list, target); entry != nullptr) {
    MitigationSection(text, {}, *entry);
    LinkSection(text, *entry);
    CongestionEventLines(text, *entry);
    CounterLines(text, kPeerUnavailable, *entry);
  } else {
    DebugLogLevel(kDebugFailure, "%s::%s: No matching target found in SCM V2 stats", kClassName, __func__);
  }
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode GetSecondGeneration(Serializer& out, const TargetSelection& selected, OutputMode mode) {
  SCMRStatisticsEntry* list = nullptr;
  StatusCode status = GetStatisticsList(kClassName, *selected.fc, list);
  if (status == kMaintenanceMode) status = kStatisticsReadError;  // deliberately, unlike a port
  if (status != kSuccess) return DisplayError(out, status, mode);
  const StatusCode shown = DisplayTargetSCMStatsV2(out, *selected.target, *list, mode);
  // The statistics have been shown by then: a failure deliberately adds a second document.
  const StatusCode freed = FreeStatisticsList(kClassName, list);
  return freed == kSuccess ? shown : DisplayError(out, freed, mode);
}

StatusCode GetFirstGeneration(Serializer& out, const TargetSelection& selected, OutputMode mode) {
  TargetPortStatistics statistics = {};
  if (const StatusCode status = ReadTargetStatistics(kClassName, selected, statistics); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayTargetSCMStats(out, *selected.target, statistics, mode);
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  TargetSelection selected;
  if (const StatusCode status = OpenTarget(kClassName, words, kGuard, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const bool is_second = HasCapability(*selected.fc, kSecondCongestionStatistics);
  return is_second ? GetSecondGeneration(out, selected, mode) : GetFirstGeneration(out, selected, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex FC Target information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get [port identifier]\r\n"}};

constexpr NodeClass kClass = {kClassName, "FC Target scmstats", kLeaves, kUsage};

}  // namespace

FCTargetSCMStatsCmdsProcessor::FCTargetSCMStatsCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
