#include "target/fc_target_stats_cmds_processor.h"

#include "congestion/guard.h"
#include "congestion/target_statistics.h"
#include "discovery/port_lookup.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCTargetStatsCmdsProcessor";

constexpr ReportFrame kFrame = {"TargetStatistics", "Target Stats", "TargetStatsList"};
constexpr std::size_t kReportBytes = 2048;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    kHostNotFound,        kFileNotFound, kAdapterNotFound,
    kFeatureNotSupported, kStatisticsReadError, kMemoryError,  kDriverLacksFeature,
};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayTargetStats(Serializer& out, const TargetEntry& target,
                              const TargetPortStatistics& statistics, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  TargetLines(text, target);
  NumberLine(text, "Link Failure Count", statistics.link_failure);
  NumberLine(text, "Loss Of Sync Count", statistics.loss_of_sync);
  NumberLine(text, "Loss Of Signal Count", statistics.loss_of_signal);
  NumberLine(text, "Primitive Sequence Protocol Error Count", statistics.primitive_sequence_error);
  NumberLine(text, "Invalid Transmission Word Count", statistics.invalid_transmission_word);
  NumberLine(text, "Invalid CRC Count", statistics.invalid_crc);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  TargetSelection selected;
  if (const StatusCode status = GetTargetFromTargetString(words, selected); status != kSuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: Get target failed err=%u", kClassName, __func__, status);
    return DisplayError(out, status, mode);
  }
  TargetPortStatistics statistics = {};
  if (const StatusCode status = ReadTargetStatistics(kClassName, selected, statistics); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayTargetStats(out, *selected.target, statistics, mode);
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

constexpr NodeClass kClass = {kClassName, "FC Target stats", kLeaves, kUsage};

}  // namespace

FCTargetStatsCmdsProcessor::FCTargetStatsCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
