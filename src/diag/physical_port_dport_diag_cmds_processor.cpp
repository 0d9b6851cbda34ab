#include "diag/physical_port_dport_diag_cmds_processor.h"

#include "diag/diagnostic_messages.h"
#include "diag/diagnostic_words.h"
#include "diag/dport_report.h"
#include "discovery/mezzanine.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr ReportFrame kFrame = {"DPortDiagInfo", "DPortDiagResult", "DPortDiagResultList"};
constexpr std::size_t kReportBytes = 2048;

// Intended: a failed allocation has no message.
constexpr auto kMessages = DiagnosticMessages(kSuccess, kNotInBootFromSan, kSpeedBelow16);

// Answers of the second test interface that have a status of their own.
constexpr LibraryAnswer kLinkTestAnswers[] = {
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
  InlineText<60> text;
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

// The reboot field of a failed change, which this class writes after the message.
constexpr RebootField kNoRebootAfterMessage = {RebootField::kAfterMessage, false};

const char* RefusalText(std::uint16_t reason) {
  for (const Refusal& row : kRefusals) {
    if (row.reason == reason) return row.text;
  }
  return "Failed, Unknown";
}

StatusCode DisplayMbxError(CommandRun& run, std::uint16_t mailbox_2) {
  const FunctionScope function(run, __func__);
  WriteReportError(run, kFrame, RefusalText(mailbox_2));
  return kLinkTestRefused;
}

StatusCode DisplayDPortDiagInfo(CommandRun& run, StatusCode status, bool enabled, RebootField reboot = {}) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, run.MessageFor(status), reboot);
  run.out.WriteBoolField("Diagnostics Port Status", enabled);
  return status;
}

// Intended: a finished test is a success whatever it found; its phases show that.
StatusCode DisplayDPortDiagResult(CommandRun& run, const DPortResultRecord& record, bool is_v2) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  WriteDPortReport(text, record, is_v2);
  return run.DisplayReport(text);
}

// The checks that all commands begin with.
StatusCode SelectDPort(CommandRun& run, const FCProtocolEntry*& fc) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return status;
  fc = selected.fc;
  bool is_mezz = false;
  if (const StatusCode status = ReadIsMezzAdapter(run, *fc, is_mezz); status != kSuccess) return status;
  if (!is_mezz && IsAnyOf(fc->pci, kElmOnly | kHazel | kIris | kDahlia)) return kSuccess;
  return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
}

// Asks whether the port is configured as a diagnostic port: a call without an error path, of whose answer
// only the low 8 bits count. kFileNotFound when the bracket cannot be opened.
StatusCode ReadDPortOption(const CommandRun& run, const FCProtocolEntry& fc, bool& enabled) {
  const bool called = CallInBracket(
      run, [&] { enabled = static_cast<std::uint8_t>(TORPI_CheckAdapterDPortOption(&fc.handle)) != 0; });
  return called ? kSuccess : kFileNotFound;
}

StatusCode CmdGetCommon(CommandRun& run) {
  const FCProtocolEntry* fc = nullptr;
  bool enabled = false;
  StatusCode status = SelectDPort(run, fc);
  if (status == kSuccess) status = ReadDPortOption(run, *fc, enabled);
  return DisplayDPortDiagInfo(run, status, enabled);
}

// Reads the wanted state from word 1.
StatusCode ReadMode(const CommandRun& run, bool& enable) {
  constexpr std::size_t kModeWord = 1;
  enable = EqualNoCase(WordAt(run.words, kModeWord), "true");
  if (enable || EqualNoCase(WordAt(run.words, kModeWord), "false")) return kSuccess;
  return RefuseWord(run, kModeWord, "DPort mode");
}

StatusCode Configure(const CommandRun& run, const FCProtocolEntry& fc, bool enable) {
  constexpr std::uint32_t kZero = 0;
  const std::uint8_t state = enable ? 1 : 0;
  return CallLibrary(run, "Configure DPort", kUpdateFailed,
                     [&] { return TORPI_ConfigureAdapterDPortSettings(&fc.handle, state, kZero); });
}

StatusCode CmdSetCommon(CommandRun& run) {
  const FCProtocolEntry* fc = nullptr;
  bool enable = false;
  bool enabled = false;
  StatusCode status = SelectDPort(run, fc);
  if (status == kSuccess) status = ReadMode(run, enable);
  if (status == kSuccess) status = Configure(run, *fc, enable);
  // What is shown is what the port says now, not what was asked for.
  if (status == kSuccess) status = ReadDPortOption(run, *fc, enabled);
  if (status != kSuccess) return DisplayDPortDiagInfo(run, status, false, kNoRebootAfterMessage);
  return DisplayDPortDiagInfo(run, kSuccess, enabled, {RebootField::kAfterMessage, IsRebootRequired(run)});
}

// The checks of `run` that follow those of all commands.
StatusCode CheckReadyToRun(const CommandRun& run, const FCProtocolEntry& fc) {
  bool enabled = false;
  if (const StatusCode status = ReadDPortOption(run, fc, enabled); status != kSuccess) return status;
  if (!enabled) return run.Refuse(kNotInDiagnosticsMode, "Port not in diagnostics mode");
  if (const StatusCode status = CheckLinkUp(run, fc); status != kSuccess) return status;
  if (fc.port_speed >= k16Gbps.code) return kSuccess;
  return run.Refuse(kSpeedTooLow, "Port speed 0x%x is below 16 Gbps", fc.port_speed);
}

// Runs the link test through the interface that the adapter has. The first interface has no status.
StatusCode RunLinkTest(const CommandRun& run, const FCProtocolEntry& fc, bool is_v2,
                       DPortResultRecord& record) {
  const auto call = [&]() -> LibraryStatus {
    if (is_v2) return TORPI_DiagnosticDPortTestV2(&fc.handle, &record);
    record = TORPI_DiagnosticDPortTest(&fc.handle, &record);
    return kLibrarySuccess;
  };
  return CallLibrary(run, "DPort test", kLinkTestAnswers, kLinkTestFailed, call);
}

StatusCode CmdRunCommon(CommandRun& run) {
  const FCProtocolEntry* fc = nullptr;
  StatusCode status = SelectDPort(run, fc);
  if (status == kSuccess) status = CheckReadyToRun(run, *fc);
  if (status != kSuccess) return run.DisplayError(status);
  const bool is_v2 = HasCapability(*fc, kSecondLinkTest);
  DPortResultRecord record = {};
  status = RunLinkTest(run, *fc, is_v2, record);
  if (status != kSuccess) return run.DisplayError(status);
  if (record.mailbox_1 == kCommandRefused) {
    run.LogFailure("DPort test refused reason=0x%x", record.mailbox_2);
    return DisplayMbxError(run, record.mailbox_2);
  }
  return DisplayDPortDiagResult(run, record, is_v2);
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex adapter port's DPortDiag information", "Usage: get\r\n", &CmdGetCommon},
    {"set", "set Sorvex adapter port's DPortDiag information", "Usage: set\r\n", &CmdSetCommon},
    // Intended: the usage text of `set`.
    {"run", "run DPortDiag on Sorvex adapter port", "Usage: set\r\n", &CmdRunCommon},
};

}  // namespace

NodeClass PhysicalPortDPortDiagCmdsProcessor() {
  return {
      .name = "PhysicalPortDPortDiagCmdsProcessor",
      .help_words = "DPortDiag",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
