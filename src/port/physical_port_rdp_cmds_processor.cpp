#include "port/physical_port_rdp_cmds_processor.h"

#include "discovery/port_lookup.h"
#include "framework/heap_buffer.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"
#include "port/rdp_decoder.h"

namespace {

constexpr ReportFrame kFrame = {"RDPInformation", "Read Diagnostics Parameters Data", "RDPDataList",
                                "RDPInfo"};
constexpr std::size_t kReportBytes = 16384;
constexpr std::uint32_t kResponseBytes = 508;

// Intended: some speak of the diagnostic port.
constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, DPortDiag read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, DPortDiag update failed"},
    kAdapterNotFound,
    kTargetNotFound,
    kDiagnosticFailed,
    kFeatureNotSupported,
    kNotInBootFromSan,
    kLinkDown,
    {kSpeedTooLow, "Failed, Feature supported for speeds 16 Gbps and above"},
    kNotInDiagnosticsMode,
    kVirtualPort,
    kMaintenanceMode,
};

StatusCode DisplayRDPInfo(CommandRun& run, std::span<const std::uint8_t> response) {
  const FunctionScope function(run, __func__);
  ReportDocument document(run, kFrame);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.Refuse(kMemoryError, "Output memory alloc failed");
  bool is_cisco = false;
  ParseRDPDataBuffer(run, response, text, is_cisco);
  run.Trace("Cisco switch: %d", is_cisco ? 1 : 0);
  document.Write(text);
  return kSuccess;
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (const StatusCode status = CheckLinkUp(run, fc); status != kSuccess) return run.DisplayError(status);
  const auto response = ZeroedBytes(kResponseBytes);
  if (response == nullptr) return run.DisplayError(run.Refuse(kMemoryError, "pRdpData malloc failed"));
  std::uint32_t size = kResponseBytes;

  OutputBracket bracket(run, " before RDP");
  if (!bracket.IsOpen()) return run.DisplayError(kFileNotFound);
  const LibraryStatus result = TORPI_DiagnosticsRDPTest(&fc.handle, response.get(), &size);
  bracket.Close();
  if (result != kLibrarySuccess) {
    return run.DisplayError(run.Refuse(FromLibrary(result, kDiagnosticFailed), "RDP Test Failed"));
  }
  // The list says how long it is; the size that the library gives back bounds nothing.
  return DisplayRDPInfo(run, {response.get(), kResponseBytes});
}

constexpr CommandRow kCommands[] = {
    {.word = "get",
     .description = "Read Diagnostic Parameters on Sorvex adapter port",
     .usage = "Usage: get\r\n",  // without the port identifier, which the command needs
     .run = &CmdGetCommon,
     .cli_word = "runcli"},  // intended: not "getcli"
};

}  // namespace

NodeClass PhysicalPortRDPCmdsProcessor() {
  return {
      .name = "PhysicalPortRDPCmdsProcessor",
      .help_words = "Port rdp",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
