#include "diag/physical_port_fc_ping_cmds_processor.h"

#include "diag/remote_port_exchange.h"
#include "framework/table.h"

namespace {

StatusCode DisplayFCPingResult(CommandRun& run, StatusCode status) {
  const FunctionScope function(run, __func__);
  return WriteVerdict(run, "FCPingResult", "FCPing", status);
}

StatusCode CmdRunCommon(CommandRun& run) {
  constexpr std::size_t kDestinationWord = 1;
  const auto call = [](const RemotePortExchange& exchange, UnusedResult& unused) {
    return TORPI_DiagnosticsFCPingTest(&exchange.fc->handle, exchange.destination.text.bytes, exchange.count,
                                       exchange.stop_on_error, &unused.value, unused.buffer,
                                       sizeof unused.buffer);
  };
  return DisplayFCPingResult(run, ExchangeInOneCall(run, kDestinationWord, call));
}

constexpr CommandRow kCommands[] = {
    {.word = "run",
     .description = "run FCPing test on Sorvex adapter port",
     .usage = "Usage: set\r\n",  // Intended: "set", as in the other exchanges
     .run = &CmdRunCommon,
     .cli_description = "run FCPing Test on Sorvex adapter port"},
};

}  // namespace

NodeClass PhysicalPortFCPingCmdsProcessor() {
  return {
      .name = "PhysicalPortFCPingCmdsProcessor",
      .help_words = "FCPing",
      .commands = TableOf<kCommands>(),
      .messages = TableOf<kVerdictMessages>(),
  };
}
