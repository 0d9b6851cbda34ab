#include "port/physical_port_fc_stats_cmds_processor.h"

#include "discovery/port_lookup.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortFCStatsCmdsProcessor";

constexpr ReportFrame kFrame = {"FCStatistics", "FCStats", "FCStatsList"};
constexpr const char* kResetStructure = "ResetFCStatistics";
constexpr std::size_t kReportBytes = 2048;

constexpr StatusMessage kMessages[] = {
    kSuccess,      kInvalidParameter, kHostNotFound,
    kFileNotFound, kAdapterNotFound,  {kStatisticsClearError, "Failed, Statistics clear error"},
    kMemoryError,  kMaintenanceMode,
};

constexpr std::string_view kDriver = "Driver";
constexpr std::string_view kFirmware = "Firmware";

constexpr std::size_t kCounters = 6;
using CounterValues = std::uint32_t[kCounters];
using CounterLabels = const char* [kCounters];

constexpr CounterLabels kDriverLabels = {
    "Controller Error Count", "Device Error Count", "IO Count",
    "Mega Bytes Count",       "LIP Reset Count",    "Interrupt Count",
};
constexpr CounterLabels kFirmwareLabels = {
    "Link Failure Count",
    "Loss Of Sync Count",
    "Loss Of Signal Count",
    "Primitive Sequence Protocol Error Count",
    "Invalid Transmission Word Count",
    "Invalid CRC Count",
};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

// Writes the document of a reset that succeeded or failed and returns its code.
StatusCode DisplayReset(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, kResetStructure, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayCounters(Serializer& out, const CounterLabels& labels, const CounterValues& counters,
                           OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) {
    DebugLogLevel(kDebugFailure, "%s::%s: Output memory alloc failed", kClassName, __func__);
    return DisplayError(out, kMemoryError, mode);
  }
  text.Line("%s: %u\n", labels[0], counters[0]);
  for (std::size_t i = 1; i < kCounters; ++i) NumberLine(text, labels[i], counters[i]);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const std::string_view set = WordAt(words, 1);
  if (EqualNoCase(set, kDriver))
    return DisplayCounters(out, kDriverLabels, selected.fc->driver_counters, mode);
  if (EqualNoCase(set, kFirmware))
    return DisplayCounters(out, kFirmwareLabels, selected.fc->firmware_counters, mode);
  DebugLogLevel(kDebugFailure, "%s::%s: Invalid mode=%.*s", kClassName, __func__,
                static_cast<int>(set.size()), set.data());
  DisplayError(out, kInvalidParameter, mode);
  return kSuccess;  // deliberately: an unknown mode prints no usage text here
}

StatusCode CmdResetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    return DisplayReset(out, status, mode);
  }
  // The driver's counters cannot be reset.
  const std::string_view set = WordAt(words, 1);
  if (!EqualNoCase(set, kFirmware)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Invalid mode=%.*s", kClassName, __func__,
                  static_cast<int>(set.size()), set.data());
    return DisplayReset(out, kInvalidParameter, mode);
  }
  const StatusCode status = CallLibrary(kClassName, "Reset device stats", kStatisticsClearError,
                                        [&] { return TORPI_ResetDeviceStats(&selected.fc->handle); });
  return DisplayReset(out, status, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdReset = &InXml<CmdResetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdResetCli = &InText<CmdResetCommon>;

constexpr const char* kGetDescription = "get Sorvex Physical Port Statistics";
constexpr const char* kResetDescription = "reset Sorvex Physical Port Statistics";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"reset", 0, kResetDescription, CmdReset},  // deliberately the index of `get`, so that `help` has 1
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"resetcli", 3, kResetDescription, CmdResetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {2, "Usage: get [port identifier]\r\n"},  // deliberately without the mode, which both need too
    {3, "Usage: reset [port identifier]\r\n"},
};

constexpr NodeClass kClass = {kClassName, "Port stats", kLeaves, kUsage};

}  // namespace

PhysicalPortFCStatsCmdsProcessor::PhysicalPortFCStatsCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
