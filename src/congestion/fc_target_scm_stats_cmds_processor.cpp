#include "congestion/fc_target_scm_stats_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/statistics.h"
#include "congestion/vocabulary.h"
#include "discovery/host_walk.h"
#include "framework/table.h"

namespace {

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

using Statistics = TargetPortStatistics;
using TargetCounter = Counter<Statistics, std::uint32_t>;

constexpr TargetCounter kLinkEvents[] = {
    {"Link Failure Count", &Statistics::link_failure},
    {"Link Unknown Event Count", &Statistics::link_unknown_event},
    {"Loss Of Sync Count", &Statistics::loss_of_sync},
    {"Loss Of Signal Count", &Statistics::loss_of_signal},
    {"Link Device Specific Event Count", &Statistics::link_device_specific_event},
    {"Primitive Sequence Protocol Error Count", &Statistics::primitive_sequence_error},
    {"Invalid Transmission Word Count", &Statistics::invalid_transmission_word},
    {"Invalid CRC Count", &Statistics::invalid_crc},
};

constexpr TargetCounter kDeliveryFailures[] = {
    {"Delivery Failure Unknown Count", &Statistics::delivery_failure_unknown},
    {"Delivery Timeout Count", &Statistics::delivery_timeout},
    {"Delivery Unable To Route Count", &Statistics::delivery_unable_to_route},
    {"Delivery Failure Device Specific Count", &Statistics::delivery_failure_device_specific},
};

constexpr TargetCounter kPeerCongestion[] = {
    {"Peer Congestion Clear Count", &Statistics::peer_congestion_clear},
    {"Peer Congestion Lost Credit Count", &Statistics::peer_congestion_lost_credit},
    {"Peer Congestion Credit Stall Count", &Statistics::peer_congestion_credit_stall},
    {"Peer Congestion Oversubscription Count", &Statistics::peer_congestion_oversubscription},
    {"Peer Congestion Device Specific Count", &Statistics::peer_congestion_device_specific},
};

StatusCode DisplayTargetSCMStats(CommandRun& run, const TargetEntry& target, const Statistics& statistics) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
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
  return run.DisplayReport(text);
}

// The element with both names of the target. The first one is the port's own and skipped on purpose.
const SCMRStatisticsEntry* TargetElement(const SCMRStatisticsEntry& first, const TargetEntry& target) {
  for (const SCMRStatisticsEntry& entry : Chain<SCMRStatisticsEntry>(first.next)) {
    if (entry.node_name == target.node_name && entry.port_name == target.port_name) {
      return &entry;
    }
  }
  return nullptr;
}

StatusCode DisplayTargetSCMStatsV2(CommandRun& run, const TargetEntry& target,
                                   const SCMRStatisticsEntry& list) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  TargetLines(text, target);
  if (const SCMRStatisticsEntry* const entry = TargetElement(list, target); entry != nullptr) {
    StatisticsLines(text, *entry, StatisticsOwner::kTarget);
  } else {
    run.LogFailure("No matching target found in SCM V2 stats");
  }
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectGuardedTarget(run, kGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const TargetEntry& target = *selected.target;
  if (HasCapability(*selected.fc, kSecondCongestionStatistics)) {
    // Intended: unlike a port, a target has no words for maintenance mode.
    return ShowStatisticsList(run, *selected.fc, kStatisticsReadError, [&](const SCMRStatisticsEntry& list) {
      return DisplayTargetSCMStatsV2(run, target, list);
    });
  }
  Statistics statistics = {};
  if (const StatusCode status = ReadTargetStatistics(run, selected, statistics); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayTargetSCMStats(run, target, statistics);
}

constexpr CommandRow kCommands[] = {
    // The usage text says "port": the identifier is a target's.
    {"get", "get Sorvex FC Target information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass FCTargetSCMStatsCmdsProcessor() {
  return {
      .name = "FCTargetSCMStatsCmdsProcessor",
      .help_words = "FC Target scmstats",
      .commands = TableOf<kCommands>(),
      .frame = {"TargetVCLMStatistics", "Target VCLM Stats", "TargetVCLMStatsList"},
      .messages = TableOf<kMessages>(),
  };
}
