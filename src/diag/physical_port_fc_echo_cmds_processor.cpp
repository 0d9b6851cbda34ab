#include "diag/physical_port_fc_echo_cmds_processor.h"

#include <string>
#include <vector>

#include "diag/diagnostic_messages.h"
#include "diag/pass_loop.h"
#include "diag/remote_port_exchange.h"
#include "framework/report.h"
#include "framework/table.h"
#include "runtime/text.h"

namespace {

constexpr ReportFrame kFrame = {"FCEchoResult", "FCEchoTestResults", "FCEchoTestResultList"};

// Intended: unlike the other exchanges without a message for a port that is too slow.
constexpr auto kMessages =
    DiagnosticMessages(kSuccess, kTargetNotFound, kDiagnosticFailed, kNotInBootFromSan);

using Results = std::vector<EchoElsResult>;

void WriteResult(Serializer& out, const std::string& destination, const EchoElsResult& result,
                 std::uint32_t sequence_number) {
  std::string response_time;
  FormatString(response_time, "%6.2f (ms)", static_cast<double>(result.response_time_ms));
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Destination WWN", destination.c_str());
  out.WriteIntField("Ping Sequence Number", sequence_number, kUnsigned32);
  out.WriteIntField("Frame Sent", result.frames_sent, kUnsigned32);
  out.WriteIntField("Frame Received", result.frames_received, kUnsigned32);
  out.WriteIntField("Response Length", result.response_length, kUnsigned32);
  out.WriteStringField("Response Time", response_time.c_str());
  out.WriteStringField("Echo Status", std::string(result.echo_status.View()).c_str());
}

StatusCode DisplayFCEchoResult(CommandRun& run, const Destination& destination, const Results& results,
                               StatusCode status) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, run.MessageFor(status));
  const ListField list(run.out, kFrame.field);
  const std::string destination_text(destination.text.View());
  std::uint32_t sequence_number = 0;
  for (const EchoElsResult& result : results) {
    WriteResult(run.out, destination_text, result, ++sequence_number);
  }
  return status;
}

// Chooses who answers: the fabric, which need not be a target, or the target of this name.
StatusCode ChooseKind(const CommandRun& run, const RemotePortExchange& exchange, EchoDestination& kind) {
  const bool is_fabric = exchange.fc->principal_fabric_name == exchange.destination.name;
  kind = is_fabric ? EchoDestination::kPrincipalFabric : EchoDestination::kTarget;
  return is_fabric ? kSuccess : CheckTarget(run, *exchange.fc, exchange.destination);
}

StatusCode StatusOfPass(const CommandRun& run, LibraryStatus answer, const EchoElsResult& result) {
  const StatusCode status = StatusOfCall(run, kExchangeStep, answer, kDiagnosticFailed);
  if (status != kSuccess || result.outcome == 0) return status;
  return run.Refuse(kDiagnosticFailed, "Echo failed outcome=%u", result.outcome);
}

// Runs the passes and gathers a record of each, also of one that failed. Returns the status of the last pass
// alone. Intended: a good one hides those that failed before it.
StatusCode RunEcho(const CommandRun& run, const RemotePortExchange& exchange, EchoDestination kind,
                   Results& results) {
  constexpr std::uint32_t kOneFrame = 1;
  StatusCode last = kSuccess;
  EchoElsResult result = {};
  LibraryStatus answer = kLibrarySuccess;
  const auto call = [&] {
    result = {};
    answer = TORPI_DiagnosticsEchoElsTest(&exchange.fc->handle, exchange.destination.text.bytes, kOneFrame,
                                          exchange.stop_on_error, static_cast<std::uint32_t>(kind), &result);
  };
  const auto go_on = [&] {
    last = StatusOfPass(run, answer, result);
    results.push_back(result);
    return last == kSuccess || exchange.stop_on_error == 0;
  };
  const StatusCode status = RunPasses(run, exchange.count, call, go_on);
  return status == kSuccess ? last : status;
}

StatusCode CmdRunCommon(CommandRun& run) {
  constexpr std::size_t kDestinationWord = 1;
  RemotePortExchange exchange;
  Results results;
  EchoDestination kind = EchoDestination::kTarget;
  StatusCode status = ReadExchange(run, kDestinationWord, exchange);
  if (status == kSuccess) status = ChooseKind(run, exchange, kind);
  if (status == kSuccess) status = RunEcho(run, exchange, kind, results);
  return DisplayFCEchoResult(run, exchange.destination, results, status);
}

constexpr CommandRow kCommands[] = {
    {.word = "run",
     .description = "run FCEcho test on Sorvex adapter port",
     .usage = "Usage: set\r\n",  // Intended: "set", as in the other exchanges
     .run = &CmdRunCommon,
     .cli_description = "run FCEcho Test on Sorvex adapter port"},
};

}  // namespace

NodeClass PhysicalPortFCEchoCmdsProcessor() {
  return {
      .name = "PhysicalPortFCEchoCmdsProcessor",
      .help_words = "FCEcho",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
