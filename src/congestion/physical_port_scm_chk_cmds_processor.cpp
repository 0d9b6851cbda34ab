#include "congestion/physical_port_scm_chk_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/vocabulary.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 4096;

constexpr GuardCheck kGuard[] = {GuardCheck::kFamily, GuardCheck::kSecondGeneration,
                                 GuardCheck::kPhysicalPort, GuardCheck::kEnabled};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, VCLM settings read error"},
    kHostNotFound,
    kNotSupportedBySwitch,
    kFileNotFound,
    kAdapterNotFound,
    kFeatureNotSupported,
    kMemoryError,
    kLinkDown,
    kDriverLacksFeature,
    kVirtualPort,
    kFeatureDisabled,
    kMaintenanceMode,
};

StatusCode DisplayPortSCMChk(CommandRun& run, const FCProtocolEntry& fc) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  PortLines(text, fc);
  TextLine(text, "Congestion Current State", CongestionStateText(fc.congestion_state));
  TextLine(text, "Congestion Severity", CongestionSeverityText(fc.congestion_severity));
  YesNoLine(text, "Link Integrity Events", fc.link_integrity_events != 0);
  YesNoLine(text, "Delivery Notification Events", fc.delivery_notification_events != 0);
  NumberLine(text, "Seconds Since Last Event", fc.seconds_since_event);
  TextLine(text, "Fabric Connection Flags", FabricConnectionText(fc.fabric_connection_flags));
  TextLine(text, "Virtual Lane", PortVirtualLaneText(fc));
  TextLine(text, "I/O Throttling", PortThrottlingText(fc));
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectGuardedPort(run, kGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayPortSCMChk(run, *selected.fc);
}

constexpr CommandRow kCommands[] = {
    // The two forms have descriptions of their own; "Congetstion" is meant.
    {.word = "get",
     .description = "get Sorvex Physical Port SAN Congetstion information",
     .usage = "Usage: get [port identifier]\r\n",
     .run = &CmdGetCommon,
     .cli_description = "get Sorvex Physical Port SCM information"},
};

}  // namespace

NodeClass PhysicalPortSCMChkCmdsProcessor() {
  return {
      .name = "PhysicalPortSCMChkCmdsProcessor",
      .help_words = "port scmchk",
      .commands = TableOf<kCommands>(),
      .frame = {"PortVCLMInformation", "Port VCLM Status", "PortVCLMStatusList"},
      .messages = TableOf<kMessages>(),
  };
}
