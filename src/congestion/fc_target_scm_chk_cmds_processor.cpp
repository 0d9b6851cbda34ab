#include "congestion/fc_target_scm_chk_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/vocabulary.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCTargetSCMChkCmdsProcessor";

constexpr ReportFrame kFrame = {"TargetVCLMInformation", "Target VCLM Status", "TargetVCLMStatusList"};
constexpr std::size_t kReportBytes = 4096;

constexpr GuardCheck kGuard[] = {GuardCheck::kFamily, GuardCheck::kSecondGeneration,
                                 GuardCheck::kPhysicalPort, GuardCheck::kEnabledOneStatus};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    {kReadFailed, "Failed, VCLM settings read error"},
    kHostNotFound,        kNotSupportedBySwitch,
    kFileNotFound,        kAdapterNotFound,
    kFeatureNotSupported, kMemoryError,
    kDriverLacksFeature,  kVirtualPort,
    kFeatureDisabled,
};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayTargetSCMChk(Serializer& out, const FCProtocolEntry& fc, const TargetEntry& target,
                               OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  TargetLines(text, target);
  TextLine(text, "Congestion Current State", CongestionStateText(target.congestion_state));
  YesNoLine(text, "Link Integrity Events", target.link_integrity_events != 0);
  NumberLine(text, "Seconds Since Last Event", target.seconds_since_event);
  TextLine(text, "Virtual Lane", TargetVirtualLaneText(fc, target));
  TextLine(text, "I/O Throttling", TargetThrottlingText(fc, target));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  TargetSelection selected;
  if (const StatusCode status = OpenTarget(kClassName, words, kGuard, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayTargetSCMChk(out, *selected.fc, *selected.target, mode);
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

constexpr NodeClass kClass = {kClassName, "FC Target scmchk", kLeaves, kUsage};

}  // namespace

FCTargetSCMChkCmdsProcessor::FCTargetSCMChkCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
