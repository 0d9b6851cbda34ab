#include "congestion/physical_port_scm_stats_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/statistics_list.h"
#include "congestion/vocabulary.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortSCMStatsCmdsProcessor";

constexpr ReportFrame kFrame = {"PortVCLMStatistics", "Port VCLM Stats", "PortVCLMStatsList"};
constexpr const char* kClearStructure = "VCLMStatisticsClear";
constexpr std::size_t kReportBytes = 8192;

constexpr GuardCheck kGetGuard[] = {GuardCheck::kFamily, GuardCheck::kAnyGeneration,
                                    GuardCheck::kPhysicalPort, GuardCheck::kEnabled};
constexpr GuardCheck kClearGuard[] = {GuardCheck::kFamily, GuardCheck::kSecondGeneration,
                                      GuardCheck::kPhysicalPort, GuardCheck::kEnabled};

constexpr StatusMessage kClearMessages[] = {
    kSuccess,
    kMemoryError,  // the last of the two rows that the report deliberately lacks
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
constexpr auto kReportMessages = std::span(kClearMessages).subspan<2>();

// What the library answers to a reset.
constexpr LibraryAnswer kResetAnswers[] = {{kLibraryNoMemory, kMemoryError},
                                           {kLibraryDriverLacksFeature, kNotSupportedByDriver}};

constexpr NotificationWords kNotifications[] = {
    {1, "Congestion, "}, {2, "Delivery, "}, {4, "Link Integrity"}};

constexpr WideCounter kSignals[] = {
    {"Congestion Alarm Count", &SCMRStatisticsEntry::congestion_alarms},
    {"Congestion Warning Count", &SCMRStatisticsEntry::congestion_warnings},
};

constexpr WideCounter kDeliveryFailures[] = {
    {"Delivery Failure Unknown Count", &SCMRStatisticsEntry::delivery_failure_unknown},
    {"Delivery Timeout Count", &SCMRStatisticsEntry::delivery_timeout},
    {"Delivery Unable To Route Count", &SCMRStatisticsEntry::delivery_unable_to_route},
    {"Delivery Failure Device Specific Count", &SCMRStatisticsEntry::delivery_failure_device_specific},
};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kReportMessages, code));
  return code;
}

StatusCode DisplayClear(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, kClearStructure, MessageFor(kClearMessages, code));
  return code;
}

StatusCode DisplayPortSCMStats(Serializer& out, const FCProtocolEntry& fc, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
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
  // Deliberately the low 32 bits of the 64-bit counters.
  NumberLine(text, "Congestion Alarm Count", static_cast<std::uint32_t>(fc.congestion_alarms));
  NumberLine(text, "Congestion Warning Count", static_cast<std::uint32_t>(fc.congestion_warnings));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

// The port's element stands first or second. Deliberately, the second one is taken whatever its kind.
const SCMRStatisticsEntry* PortElement(const SCMRStatisticsEntry& first) {
  return first.kind == StatisticsElementKind::kPhysicalPort ? &first : first.next;
}

StatusCode DisplayPortSCMStatsV2(Serializer& out, const FCProtocolEntry& fc, const SCMRStatisticsEntry& list,
                                 OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  PortLines(text, fc);
  if (const SCMRStatisticsEntry* const entry = PortElement(list); entry != nullptr) {
    MitigationSection(text, kSignals, *entry);
    LinkSection(text, *entry);
    CounterLines(text, kDeliveryFailures, *entry);
    CongestionEventLines(text, *entry);
  } else {
    DebugLogLevel(kDebugFailure, "%s::%s: No matching physical port found in SCM V2 stats", kClassName,
                  __func__);
  }
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode GetSecondGeneration(Serializer& out, const FCProtocolEntry& fc, OutputMode mode) {
  SCMRStatisticsEntry* list = nullptr;
  if (const StatusCode status = GetStatisticsList(kClassName, fc, list); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const StatusCode shown = DisplayPortSCMStatsV2(out, fc, *list, mode);
  // The statistics have been shown by then: a failure deliberately adds a second document.
  const StatusCode freed = FreeStatisticsList(kClassName, list);
  return freed == kSuccess ? shown : DisplayError(out, freed, mode);
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = OpenPort(kClassName, words, kGetGuard, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const bool is_second = HasCapability(*selected.fc, kSecondCongestionStatistics);
  return is_second ? GetSecondGeneration(out, *selected.fc, mode)
                   : DisplayPortSCMStats(out, *selected.fc, mode);
}

StatusCode ResetStatistics(const FCProtocolEntry& fc) {
  return CallLibrary(kClassName, "Reset SCM statistics", kResetAnswers, kStatisticsResetFailed,
                     [&] { return TORPI_SANCongMgmtResetStatistics(&fc.handle); });
}

StatusCode CmdClearCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = OpenPort(kClassName, words, kClearGuard, selected); status != kSuccess) {
    return DisplayClear(out, status, mode);
  }
  return DisplayClear(out, ResetStatistics(*selected.fc), mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdClear = &InXml<CmdClearCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdClearCli = &InText<CmdClearCommon>;

constexpr const char* kClearDescription =
    "clear SCM statistics of all targets connected to Sorvex Physical Port";

constexpr Leaf kLeaves[] = {
    {"get", 0, "get Sorvex Physical Port SCM statistics", CmdGet},
    {"clear", 1, kClearDescription, CmdClear},
    {"help", 2, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 3, "get Sorvex Physical Port SCM information", CmdGetCli, &CommandNode::CmdUsage},
    {"clearcli", 4, kClearDescription, CmdClearCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: get [port identifier]\r\n"},
    {4, "Usage: clear [port identifier]\r\n"},
};

constexpr NodeClass kClass = {kClassName, "port scmstats", kLeaves, kUsage};

}  // namespace

PhysicalPortSCMStatsCmdsProcessor::PhysicalPortSCMStatsCmdsProcessor(CmdProcessor* parent,
                                                                     const SubNode& self)
    : CommandNode(parent, self, kClass) {}
