#include "port/physical_port_rdp_cmds_processor.h"

#include "diag/test_messages.h"
#include "diag/test_port.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "port/rdp_decoder.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortRDPCmdsProcessor";

constexpr ReportFrame kFrame = {"RDPInformation", "Read Diagnostics Parameters Data", "RDPDataList",
                                "RDPInfo"};
constexpr std::size_t kReportBytes = 16384;
constexpr std::uint32_t kResponseBytes = 508;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter, kDPortReadFailed, kHostNotFound,         kFileNotFound,        kDPortUpdateFailed,
    kAdapterNotFound,  kTargetNotFound,  kDiagnosticFailed,     kFeatureNotSupported, kNotInBootFromSan,
    kLinkDown,         kSpeedBelow16,    kNotInDiagnosticsMode, kVirtualPort,         kMaintenanceMode,
};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayRDPInfo(Serializer& out, std::span<const std::uint8_t> response, OutputMode mode) {
  ReportText text(kReportBytes);
  bool is_cisco = false;
  if (text.Allocated()) ParseRDPDataBuffer(response, text, is_cisco);
  DebugLogLevel(kDebugTrace, "%s::%s: Cisco switch: %d", kClassName, __func__, is_cisco ? 1 : 0);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  if (const StatusCode status = SelectTestPort(kClassName, words, fc); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  if (!IsLinkUp(*fc)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Port is in Link Down state", kClassName, __func__);
    return DisplayError(out, kLinkDown, mode);
  }
  std::uint8_t response[kResponseBytes] = {};
  std::uint32_t size = kResponseBytes;
  const StatusCode status = CallLibrary(kClassName, "RDP Test", kDiagnosticFailed, [&] {
    return TORPI_DiagnosticsRDPTest(&fc->handle, response, &size);
  });
  if (status != kSuccess) return DisplayError(out, status, mode);
  // The list tells its own length; the size that the library gives back bounds nothing.
  return DisplayRDPInfo(out, response, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "Read Diagnostic Parameters on Sorvex adapter port";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},  // deliberately not "getcli"
};

constexpr UsageText kUsage[] = {{2, "Usage: get\r\n"}};  // deliberately without the port identifier

constexpr NodeClass kClass = {kClassName, "Port rdp", kLeaves, kUsage};

}  // namespace

PhysicalPortRDPCmdsProcessor::PhysicalPortRDPCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
