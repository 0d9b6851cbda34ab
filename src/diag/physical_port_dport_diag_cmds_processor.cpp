#include "diag/physical_port_dport_diag_cmds_processor.h"

#include "diag/dport_report.h"
#include "diag/test_messages.h"
#include "diag/test_port.h"
#include "discovery/mezzanine.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortDPortDiagCmdsProcessor";

constexpr ReportFrame kFrame = {"DPortDiagInfo", "DPortDiagResult", "DPortDiagResultList"};
constexpr std::size_t kReportBytes = 2048;

// Deliberately without a text of its own for a failed allocation.
constexpr StatusMessage kMessages[] = {
    kSuccess,           kInvalidParameter,     kDPortReadFailed,     kHostNotFound,     kFileNotFound,
    kDPortUpdateFailed, kAdapterNotFound,      kFeatureNotSupported, kNotInBootFromSan, kLinkDown,
    kSpeedBelow16,      kNotInDiagnosticsMode, kVirtualPort,         kMaintenanceMode,
};

// Answers of the second test interface that have a status of their own.
constexpr LibraryAnswer kTestAnswers[] = {
    {kLibraryInvalidParameter, kInvalidParameter},
    {kLibraryVirtualPort, kVirtualPort},
    {kLibraryNoLinkTest, kFeatureNotSupported},
    {kLibraryNoDiagnosticPort, kNotInDiagnosticsMode},
    {kLibraryLinkDown, kLinkDown},
    {kLibraryLinkTooSlow, kSpeedTooLow},
    {kLibraryBootFromSan, kNotInBootFromSan},
};

// Why the firmware refused a test, by mailbox register 2.
struct Refusal {
  std::uint16_t reason;
  const char* text;
};

constexpr Refusal kRefusals[] = {
    {0x0007, "Failed, Firmware not ready to execute requested command"},
    {0x0015, "Failed, Invalid Request"},
    {0x003A, "Failed, Mailbox command IOCB not allowed for this command"},
    {0x0047, "Failed, Incorrect state for this command"},
    {0x0060, "Failed, SFP does not support WRAP capability"},
    {0x8061, "Failed, Command not supported with Current Switch"},
};

constexpr std::uint16_t kCommandRefused = 0x4005;  // in mailbox register 1

// The reboot field of failed changes.
constexpr RebootField kNoRebootNeeded = {RebootField::kBehindMessage, false};

const char* RefusalText(std::uint16_t reason) {
  for (const Refusal& row : kRefusals) {
    if (row.reason == reason) return row.text;
  }
  return "Failed, Unknown";
}

// The checks that all commands begin with.
StatusCode SelectPort(const Words& words, const FCProtocolEntry*& fc) {
  if (const StatusCode status = SelectTestPort(kClassName, words, fc); status != kSuccess) return status;
  bool is_mezz = false;
  if (const StatusCode status = ReadIsMezzAdapter(kClassName, *fc, is_mezz); status != kSuccess)
    return status;
  if (is_mezz || !IsAnyOf(fc->pci, kElmOnly | kHazel | kIris | kDahlia)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
    return kFeatureNotSupported;
  }
  return kSuccess;
}

// Asks whether the port is configured as a diagnostic port; a call without an error path. Only the low 8 bits
// of the answer count. False when the bracket cannot be opened.
bool ReadDPortOption(const FCProtocolEntry& fc, bool& enabled) {
  return CallInBracket(kClassName, [&] {
    enabled = static_cast<std::uint8_t>(TORPI_CheckAdapterDPortOption(&fc.handle)) != 0;
  });
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayMbxError(Serializer& out, std::uint16_t mailbox_2, OutputMode mode) {
  WriteReportError(out, mode, kFrame, RefusalText(mailbox_2));
  return kLinkTestRefused;
}

StatusCode DisplayDPortDiagInfo(Serializer& out, bool enabled, StatusCode code, OutputMode mode,
                                RebootField reboot = {}) {
  const Document document(out, mode, kFrame.structure, MessageFor(kMessages, code), reboot);
  out.WriteBoolField("Diagnostics Port Status", enabled);
  return code;
}

// A finished test is deliberately a success whatever it found: its phases tell.
StatusCode DisplayDPortDiagResult(Serializer& out, bool is_v2, const DPortResultRecord& record,
                                  OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  WriteDPortReport(text, record, is_v2);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  bool enabled = false;
  StatusCode status = SelectPort(words, fc);
  if (status == kSuccess && !ReadDPortOption(*fc, enabled)) status = kFileNotFound;
  return DisplayDPortDiagInfo(out, enabled, status, mode);
}

StatusCode Configure(const FCProtocolEntry& fc, bool enable) {
  constexpr std::uint32_t kZero = 0;
  const std::uint8_t state = enable ? 1 : 0;
  return CallLibrary(kClassName, "Configure DPort", kUpdateFailed,
                     [&] { return TORPI_ConfigureAdapterDPortSettings(&fc.handle, state, kZero); });
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) {
    return DisplayDPortDiagInfo(out, false, code, mode, kNoRebootNeeded);
  };

  const FCProtocolEntry* fc = nullptr;
  if (const StatusCode status = SelectPort(words, fc); status != kSuccess) return fail(status);
  const bool enable = EqualNoCase(WordAt(words, 1), "true");
  if (!enable && !EqualNoCase(WordAt(words, 1), "false")) return fail(kInvalidParameter);
  if (const StatusCode status = Configure(*fc, enable); status != kSuccess) return fail(status);
  // What is shown is what the port says now, not what was asked for.
  bool enabled = false;
  if (!ReadDPortOption(*fc, enabled)) return fail(kFileNotFound);
  return DisplayDPortDiagInfo(out, enabled, kSuccess, mode,
                              {RebootField::kBehindMessage, IsRebootRequired(kClassName)});
}

// The checks of `run` behind those of all commands.
StatusCode CheckTestPort(const FCProtocolEntry& fc) {
  bool enabled = false;
  if (!ReadDPortOption(fc, enabled)) return kFileNotFound;
  if (!enabled) return kNotInDiagnosticsMode;
  if (!IsLinkUp(fc)) return kLinkDown;
  return fc.port_speed < k16Gbps.code ? kSpeedTooLow : kSuccess;
}

// Runs the link test through the interface that the adapter has. The first interface has no status.
StatusCode RunTest(const FCProtocolEntry& fc, bool is_v2, DPortResultRecord& record) {
  const auto call = [&]() -> LibraryStatus {
    if (is_v2) return TORPI_DiagnosticDPortTestV2(&fc.handle, &record);
    record = TORPI_DiagnosticDPortTest(&fc.handle, &record);
    return kLibrarySuccess;
  };
  return CallLibrary(kClassName, "DPort test", kTestAnswers, kLinkTestFailed, call);
}

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  if (const StatusCode status = SelectPort(words, fc); status != kSuccess)
    return DisplayError(out, status, mode);
  if (const StatusCode status = CheckTestPort(*fc); status != kSuccess)
    return DisplayError(out, status, mode);
  const bool is_v2 = HasCapability(*fc, kSecondLinkTest);
  DPortResultRecord record = {};
  if (const StatusCode status = RunTest(*fc, is_v2, record); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  if (record.mailbox_1 == kCommandRefused) return DisplayMbxError(out, record.mailbox_2, mode);
  return DisplayDPortDiagResult(out, is_v2, record, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr const char* kGetDescription = "get Sorvex adapter port's DPortDiag information";
constexpr const char* kSetDescription = "set Sorvex adapter port's DPortDiag information";
constexpr const char* kRunDescription = "run DPortDiag on Sorvex adapter port";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"set", 1, kSetDescription, CmdSet},
    {"run", 2, kRunDescription, CmdRun},
    {"help", 3, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 4, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setcli", 5, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
    {"runcli", 6, kRunDescription, CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {4, "Usage: get\r\n"}, {5, "Usage: set\r\n"}, {6, "Usage: set\r\n"},  // deliberately the text of `set`
};

constexpr NodeClass kClass = {kClassName, "DPortDiag", kLeaves, kUsage};

}  // namespace

PhysicalPortDPortDiagCmdsProcessor::PhysicalPortDPortDiagCmdsProcessor(CmdProcessor* parent,
                                                                       const SubNode& self)
    : CommandNode(parent, self, kClass) {}
