#include "congestion/fc_target_scm_chk_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/vocabulary.h"
#include "framework/table.h"

namespace {

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

StatusCode DisplayTargetSCMChk(CommandRun& run, const FCProtocolEntry& fc, const TargetEntry& target) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  TargetLines(text, target);
  TextLine(text, "Congestion Current State", CongestionStateText(target.congestion_state));
  YesNoLine(text, "Link Integrity Events", target.link_integrity_events != 0);
  NumberLine(text, "Seconds Since Last Event", target.seconds_since_event);
  TextLine(text, "Virtual Lane", TargetVirtualLaneText(fc, target));
  TextLine(text, "I/O Throttling", TargetThrottlingText(fc, target));
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectGuardedTarget(run, kGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayTargetSCMChk(run, *selected.fc, *selected.target);
}

constexpr CommandRow kCommands[] = {
    // The usage text says "port": the identifier is a target's.
    {"get", "get Sorvex FC Target information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass FCTargetSCMChkCmdsProcessor() {
  return {
      .name = "FCTargetSCMChkCmdsProcessor",
      .help_words = "FC Target scmchk",
      .commands = TableOf<kCommands>(),
      .frame = {"TargetVCLMInformation", "Target VCLM Status", "TargetVCLMStatusList"},
      .messages = TableOf<kMessages>(),
  };
}
