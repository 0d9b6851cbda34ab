#include "target/fc_target_stats_cmds_processor.h"

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "congestion/statistics.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 2048;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    kHostNotFound,        kFileNotFound, kAdapterNotFound,
    kFeatureNotSupported, kStatisticsReadError, kMemoryError,  kDriverLacksFeature,
};

using Statistics = TargetPortStatistics;

constexpr Counter<Statistics, std::uint32_t> kLinkErrors[] = {
    {"Link Failure Count", &Statistics::link_failure},
    {"Loss Of Sync Count", &Statistics::loss_of_sync},
    {"Loss Of Signal Count", &Statistics::loss_of_signal},
    {"Primitive Sequence Protocol Error Count", &Statistics::primitive_sequence_error},
    {"Invalid Transmission Word Count", &Statistics::invalid_transmission_word},
    {"Invalid CRC Count", &Statistics::invalid_crc},
};

StatusCode DisplayTargetStats(CommandRun& run, const TargetEntry& target, const Statistics& statistics) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  TargetLines(text, target);
  CounterLines(text, kLinkErrors, statistics);
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectTarget(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  Statistics statistics = {};
  if (const StatusCode status = ReadTargetStatistics(run, selected, statistics); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayTargetStats(run, *selected.target, statistics);
}

constexpr CommandRow kCommands[] = {
    // The usage text says "port": the identifier is a target's.
    {"get", "get Sorvex FC Target information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass FCTargetStatsCmdsProcessor() {
  return {
      .name = "FCTargetStatsCmdsProcessor",
      .help_words = "FC Target stats",
      .commands = TableOf<kCommands>(),
      .frame = {"TargetStatistics", "Target Stats", "TargetStatsList"},
      .messages = TableOf<kMessages>(),
  };
}
