#include "diag/physical_port_ct_diag_cmds_processor.h"

#include <string_view>

#include "diag/remote_test.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortCTDiagCmdsProcessor";

// Which test runs, as the library takes it.
struct TestType {
  std::uint32_t value;
  const char* name;
};

constexpr TestType kTestTypes[] = {{1, "CTPing"}, {2, "CTFCTraceRoute"}};
constexpr TestType kUnknownType = {0, "Unknown"};

const TestType& TestTypeOf(std::string_view word) {
  for (const TestType& type : kTestTypes) {
    if (EqualNoCase(word, type.name)) return type;
  }
  return kUnknownType;
}

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const TestType& type = TestTypeOf(WordAt(words, 1));
  const auto call = [&](const RemoteTest& test, UnusedResult& unused) {
    return TORPI_DiagnosticsCTCommand(&test.fc->handle, test.destination.text.bytes, test.count,
                                      test.stop_on_error, &unused.value, unused.buffer, sizeof unused.buffer,
                                      type.value);
  };
  // The test type is the one word that is checked ahead of the port.
  const StatusCode code =
      &type == &kUnknownType ? kInvalidParameter : RunVerdictTest(kClassName, words, 2, call);
  return WriteVerdict(out, mode, "CTDiagResult", type.name, code);
}

constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr Leaf kLeaves[] = {
    {"run", 0, "run CTDiag test on Sorvex adapter port", CmdRun},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, "run CTDiag Test on Sorvex adapter port", CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: set\r\n"}};  // deliberately "set"

constexpr NodeClass kClass = {kClassName, "CTDiag", kLeaves, kUsage};

}  // namespace

PhysicalPortCTDiagCmdsProcessor::PhysicalPortCTDiagCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
