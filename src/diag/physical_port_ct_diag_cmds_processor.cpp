#include "diag/physical_port_ct_diag_cmds_processor.h"

#include <string_view>

#include "diag/diagnostic_words.h"
#include "diag/remote_port_exchange.h"
#include "framework/inline_text.h"
#include "framework/table.h"

namespace {

// Which test runs, as the library takes it.
struct TestType {
  std::uint32_t value;
  InlineText<14> name;
};

constexpr TestType kTestTypes[] = {{1, "CTPing"}, {2, "CTFCTraceRoute"}};
constexpr TestType kUnknownType = {0, "Unknown"};

const TestType& TestTypeOf(std::string_view word) {
  for (const TestType& type : kTestTypes) {
    if (EqualNoCase(word, type.name)) return type;
  }
  return kUnknownType;
}

StatusCode DisplayCTDiagResult(CommandRun& run, const TestType& type, StatusCode status) {
  const FunctionScope function(run, __func__);
  return WriteVerdict(run, "CTDiagResult", type.name, status);
}

StatusCode CmdRunCommon(CommandRun& run) {
  constexpr std::size_t kTestTypeWord = 1;
  constexpr std::size_t kDestinationWord = 2;
  const TestType& type = TestTypeOf(WordAt(run.words, kTestTypeWord));
  // The test type is the one word that is checked before the port.
  if (&type == &kUnknownType) {
    return DisplayCTDiagResult(run, type, RefuseWord(run, kTestTypeWord, "test type"));
  }
  const auto call = [&type](const RemotePortExchange& exchange, UnusedResult& unused) {
    return TORPI_DiagnosticsCTCommand(&exchange.fc->handle, exchange.destination.text.bytes, exchange.count,
                                      exchange.stop_on_error, &unused.value, unused.buffer,
                                      sizeof unused.buffer, type.value);
  };
  return DisplayCTDiagResult(run, type, ExchangeInOneCall(run, kDestinationWord, call));
}

constexpr CommandRow kCommands[] = {
    {.word = "run",
     .description = "run CTDiag test on Sorvex adapter port",
     .usage = "Usage: set\r\n",  // Intended: "set", as in the other exchanges
     .run = &CmdRunCommon,
     .cli_description = "run CTDiag Test on Sorvex adapter port"},
};

}  // namespace

NodeClass PhysicalPortCTDiagCmdsProcessor() {
  return {
      .name = "PhysicalPortCTDiagCmdsProcessor",
      .help_words = "CTDiag",
      .commands = TableOf<kCommands>(),
      .messages = TableOf<kVerdictMessages>(),
  };
}
