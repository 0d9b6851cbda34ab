#include "congestion/physical_port_scm_chk_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/vocabulary.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortSCMChkCmdsProcessor";

constexpr ReportFrame kFrame = {"PortVCLMInformation", "Port VCLM Status", "PortVCLMStatusList"};
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

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayPortSCMChk(Serializer& out, const FCProtocolEntry& fc, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  PortLines(text, fc);
  TextLine(text, "Congestion Current State", CongestionStateText(fc.congestion_state));
  TextLine(text, "Congestion Severity", CongestionSeverityText(fc.congestion_severity));
  YesNoLine(text, "Link Integrity Events", fc.link_integrity_events != 0);
  YesNoLine(text, "Delivery Notification Events", fc.delivery_notification_events != 0);
  NumberLine(text, "Seconds Since Last Event", fc.seconds_since_event);
  TextLine(text, "Fabric Connection Flags", FabricConnectionText(fc.fabric_connection_flags));
  TextLine(text, "Virtual Lane", PortVirtualLaneText(fc));
  TextLine(text, "I/O Throttling", PortThrottlingText(fc));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = OpenPort(kClassName, words, kGuard, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayPortSCMChk(out, *selected.fc, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr Leaf kLeaves[] = {
    {"get", 0, "get Sorvex Physical Port SAN Congetstion information",
     CmdGet},  // deliberately spelt like this
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, "get Sorvex Physical Port SCM information", CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get [port identifier]\r\n"}};

constexpr NodeClass kClass = {kClassName, "port scmchk", kLeaves, kUsage};

}  // namespace

PhysicalPortSCMChkCmdsProcessor::PhysicalPortSCMChkCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
