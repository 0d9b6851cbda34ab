#include "diag/physical_port_fc_ping_cmds_processor.h"

#include "diag/remote_test.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortFCPingCmdsProcessor";

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto call = [](const RemoteTest& test, UnusedResult& unused) {
    return TORPI_DiagnosticsFCPingTest(&test.fc->handle, test.destination.text.bytes, test.count,
                                       test.stop_on_error, &unused.value, unused.buffer,
                                       sizeof unused.buffer);
  };
  const StatusCode code = RunVerdictTest(kClassName, words, 1, call);
  return WriteVerdict(out, mode, "FCPingResult", "FCPing", code);
}

constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr Leaf kLeaves[] = {
    {"run", 0, "run FCPing test on Sorvex adapter port", CmdRun},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, "run FCPing Test on Sorvex adapter port", CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: set\r\n"}};  // deliberately "set"

constexpr NodeClass kClass = {kClassName, "FCPing", kLeaves, kUsage};

}  // namespace

PhysicalPortFCPingCmdsProcessor::PhysicalPortFCPingCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
