#include "congestion/physical_port_scm_stats_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/statistics.h"
#include "congestion/vocabulary.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 8192;

constexpr GuardCheck kGetGuard[] = {GuardCheck::kFamily, GuardCheck::kAnyGeneration,
                                    GuardCheck::kPhysicalPort, GuardCheck::kEnabled};
constexpr GuardCheck kClearGuard[] = {GuardCheck::kFamily, GuardCheck::kSecondGeneration,
                                      GuardCheck::kPhysicalPort, GuardCheck::kEnabled};

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
    kLinkDown,
    kDriverLacksFeature,
    kVirtualPort,
    kFeatureDisabled,
    kMaintenanceMode,
};

// Intended: only `clear` has words for these two.
const char* ClearMessage(const CommandRun& run, StatusCode code) {
  return code == kSuccess || code == kMemoryError ? CommonMessage(code) : run.MessageFor(code);
}

// What the library answers to a reset.
constexpr LibraryAnswer kResetAnswers[] = {{kLibraryNoMemory, kMemoryError},
                                           {kLibraryDriverLacksFeature, kNotSupportedByDriver}};

constexpr NotificationWords kNotifications[] = {
    {1, "Congestion, "}, {2, "Delivery, "}, {4, "Link Integrity"}};

StatusCode DisplayClear(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  const Document document(run, "VCLMStatisticsClear", ClearMessage(run, code));
  return code;
}

StatusCode DisplayPortSCMStats(CommandRun& run, const FCProtocolEntry& fc) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  PortLines(text, fc);
  NotificationLine(text, fc.congestion_notifications, kNotifications);
  TextLine(text, "Link Event Type", LinkEventText(fc.link_event_type));
  MillisecondsLine(text, "Link Event Threshold", fc.link_event_threshold_ms);
  NumberLine(text, "Link Failure Count", fc.firmware_counters[0]);
  NumberLine(text, "Loss Of Sync Count", fc.firmware_counters[1]);
  NumberLine(text, "Loss Of Signal Count", fc.firmware_counters[2]);
  NumberLine(text, "Primitive Sequence Protocol Error Count", fc.firmware_counters[3]);
  NumberLine(text, "Invalid Transmission Word Count", fc.firmware_counters[4]);
  NumberLine(text, "Invalid CRC Count", fc.firmware_counters[5]);
  TextLine(text, "Delivery Notification", PortDeliveryReasonText(fc.delivery_reason));
  TextLine(text, "Congestion Event Type", CongestionEventText(fc.congestion_event_type));
  MillisecondsLine(text, "Congestion Event Period", fc.congestion_event_period_ms);
  TextLine(text, "Congestion Severity", CongestionSeverityText(fc.congestion_severity));
  // Intended: the low 32 bits of the 64-bit counters.
  NumberLine(text, "Congestion Alarm Count", static_cast<std::uint32_t>(fc.congestion_alarms));
  NumberLine(text, "Congestion Warning Count", static_cast<std::uint32_t>(fc.congestion_warnings));
  return run.DisplayReport(text);
}

// The port's element is the first or the second one. Intended: the second one is taken whatever its kind.
const SCMRStatisticsEntry* PortElement(const SCMRStatisticsEntry& first) {
  return first.kind == StatisticsElementKind::kPhysicalPort ? &first : first.next;
}

StatusCode DisplayPortSCMStatsV2(CommandRun& run, const FCProtocolEntry& fc,
                                 const SCMRStatisticsEntry& list) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  PortLines(text, fc);
  if (const SCMRStatisticsEntry* const entry = PortElement(list); entry != nullptr) {
    StatisticsLines(text, *entry, StatisticsOwner::kPort);
  } else {
    run.LogFailure("No matching physical port found in SCM V2 stats");
  }
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectGuardedPort(run, kGetGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (!HasCapability(fc, kSecondCongestionStatistics)) return DisplayPortSCMStats(run, fc);
  return ShowStatisticsList(run, fc, kMaintenanceMode, [&](const SCMRStatisticsEntry& list) {
    return DisplayPortSCMStatsV2(run, fc, list);
  });
}

StatusCode CmdClearCommon(CommandRun& run) {
  PortSelection selected;
  StatusCode status = SelectGuardedPort(run, kClearGuard, selected);
  if (status == kSuccess) {
    status = CallLibrary(run, "Reset SCM statistics", kResetAnswers, kStatisticsResetFailed,
                         [&] { return TORPI_SANCongMgmtResetStatistics(&selected.fc->handle); });
  }
  return DisplayClear(run, status);
}

constexpr CommandRow kCommands[] = {
    // The two forms have descriptions of their own.
    {.word = "get",
     .description = "get Sorvex Physical Port SCM statistics",
     .usage = "Usage: get [port identifier]\r\n",
     .run = &CmdGetCommon,
     .cli_description = "get Sorvex Physical Port SCM information"},
    {"clear", "clear SCM statistics of all targets connected to Sorvex Physical Port",
     "Usage: clear [port identifier]\r\n", &CmdClearCommon},
};

}  // namespace

NodeClass PhysicalPortSCMStatsCmdsProcessor() {
  return {
      .name = "PhysicalPortSCMStatsCmdsProcessor",
      .help_words = "port scmstats",
      .commands = TableOf<kCommands>(),
      .frame = {"PortVCLMStatistics", "Port VCLM Stats", "PortVCLMStatsList"},
      .messages = TableOf<kMessages>(),
  };
}
