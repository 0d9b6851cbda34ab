#include "port/physical_port_fc_stats_cmds_processor.h"

#include "discovery/port_lookup.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

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
using CounterLabels = InlineText<39>[kCounters];

// In the order of the counters in the port's record.
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

StatusCode DisplayCounters(CommandRun& run, const CounterLabels& labels, const CounterValues& counters) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  text.Line("%s: %u\n", labels[0].CString(), counters[0]);
  for (std::size_t i = 1; i < kCounters; ++i) NumberLine(text, labels[i], counters[i]);
  return run.DisplayReport(text);
}

StatusCode DisplayFCDriverStats(CommandRun& run, const FCProtocolEntry& fc) {
  const FunctionScope function(run, __func__);
  return DisplayCounters(run, kDriverLabels, fc.driver_counters);
}

StatusCode DisplayFCFWStats(CommandRun& run, const FCProtocolEntry& fc) {
  const FunctionScope function(run, __func__);
  return DisplayCounters(run, kFirmwareLabels, fc.firmware_counters);
}

// Writes the document of a reset that succeeded or failed and returns its code.
StatusCode WriteResetDocument(CommandRun& run, StatusCode code) {
  const Document document(run, "ResetFCStatistics", run.MessageFor(code));
  return code;
}

StatusCode DisplayResetError(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  return WriteResetDocument(run, code);
}

StatusCode RefuseMode(const CommandRun& run, std::string_view mode) {
  return run.Refuse(kInvalidParameter, "Invalid mode=%.*s", static_cast<int>(mode.size()), mode.data());
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const std::string_view mode = WordAt(run.words, 1);
  if (EqualNoCase(mode, kDriver)) return DisplayFCDriverStats(run, *selected.fc);
  if (EqualNoCase(mode, kFirmware)) return DisplayFCFWStats(run, *selected.fc);
  run.DisplayError(RefuseMode(run, mode));
  return kSuccess;  // intended: no usage text follows the document of an unknown mode
}

StatusCode CmdResetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return DisplayResetError(run, status);
  }
  // The driver's counters cannot be reset.
  const std::string_view mode = WordAt(run.words, 1);
  if (!EqualNoCase(mode, kFirmware)) return DisplayResetError(run, RefuseMode(run, mode));
  const StatusCode status = CallLibrary(run, "Reset device stats", kStatisticsClearError,
                                        [&] { return TORPI_ResetDeviceStats(&selected.fc->handle); });
  return status == kSuccess ? WriteResetDocument(run, kSuccess) : DisplayResetError(run, status);
}

// The usage texts leave out the mode, which both commands need too.
constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Physical Port Statistics", "Usage: get [port identifier]\r\n", &CmdGetCommon},
    {.word = "reset",
     .description = "reset Sorvex Physical Port Statistics",
     .usage = "Usage: reset [port identifier]\r\n",
     .run = &CmdResetCommon,
     .usage_index = 0},  // intended: that of `get`, so that `help` has 1
};

}  // namespace

NodeClass PhysicalPortFCStatsCmdsProcessor() {
  return {
      .name = "PhysicalPortFCStatsCmdsProcessor",
      .help_words = "Port stats",
      .commands = TableOf<kCommands>(),
      .frame = {"FCStatistics", "FCStats", "FCStatsList"},
      .messages = TableOf<kMessages>(),
  };
}
