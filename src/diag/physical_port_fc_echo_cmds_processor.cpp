#include "diag/physical_port_fc_echo_cmds_processor.h"

#include <string>
#include <vector>

#include "diag/remote_test.h"
#include "diag/test_passes.h"
#include "framework/report.h"
#include "runtime/text.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortFCEchoCmdsProcessor";

using Results = std::vector<EchoElsResult>;

void WriteResult(Serializer& out, const std::string& destination, const EchoElsResult& result,
                 std::uint32_t sequence_number) {
  std::string response_time;
  FormatString(response_time, "%6.2f (ms)", static_cast<double>(result.response_time_ms));
  const ListStructure element(out, "FCEchoTestResultList");
  out.WriteStringField("Destination WWN", destination.c_str());
  out.WriteIntField("Ping Sequence Number", sequence_number, kUnsigned32);
  out.WriteIntField("Frame Sent", result.frames_sent, kUnsigned32);
  out.WriteIntField("Frame Received", result.frames_received, kUnsigned32);
  out.WriteIntField("Response Length", result.response_length, kUnsigned32);
  out.WriteStringField("Response Time", response_time.c_str());
  out.WriteStringField("Echo Status", std::string(result.echo_status.View()).c_str());
}

StatusCode DisplayFCEchoResult(Serializer& out, const Destination& destination, const Results& results,
                               StatusCode code, OutputMode mode) {
  const auto messages = RemoteTestMessages();
  const Document document(out, mode, "FCEchoResult", MessageFor(messages.first(messages.size() - 1), code));
  const ListField list(out, "FCEchoTestResults");
  const std::string destination_text(destination.text.View());
  std::uint32_t sequence_number = 0;
  for (const EchoElsResult& result : results) WriteResult(out, destination_text, result, ++sequence_number);
  return code;
}

// Chooses who answers. The fabric itself does, without being a target. False when nobody of this name is
// known.
bool ChooseKind(const RemoteTest& test, EchoDestination& kind) {
  const bool is_fabric = test.fc->principal_fabric_name == test.destination.name;
  kind = is_fabric ? EchoDestination::kPrincipalFabric : EchoDestination::kTarget;
  return is_fabric || IsTarget(*test.fc, test.destination);
}

// Runs the passes, and gathers a record of each, also of one that failed. Returns the status of the last pass
// alone: a good one deliberately covers those that failed ahead of it.
StatusCode RunEcho(const RemoteTest& test, EchoDestination kind, OutputMode mode, Results& results) {
  constexpr std::uint32_t kOneFrame = 1;
  StatusCode code = kSuccess;
  EchoElsResult result = {};
  LibraryStatus answer = kLibrarySuccess;
  const auto call = [&] {
    result = {};
    answer = TORPI_DiagnosticsEchoElsTest(&test.fc->handle, test.destination.text.bytes, kOneFrame,
                                          test.stop_on_error, static_cast<std::uint32_t>(kind), &result);
  };
  const auto go_on = [&] {
    code = StatusOfCall(kClassName, kTestStep, answer, kDiagnosticFailed);
    if (code == kSuccess && result.outcome != 0) code = kDiagnosticFailed;
    results.push_back(result);
    return code == kSuccess || test.stop_on_error == 0;
  };
  return RunPasses(kClassName, mode, test.count, call, go_on) ? code : kFileNotFound;
}

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  RemoteTest test;
  Results results;
  EchoDestination kind = EchoDestination::kTarget;
  StatusCode code = ReadRemoteTest(kClassName, words, 1, test);
  if (code == kSuccess && !ChooseKind(test, kind)) code = kTargetNotFound;
  if (code == kSuccess) code = RunEcho(test, kind, mode, results);
  return DisplayFCEchoResult(out, test.destination, results, code, mode);
}

constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr Leaf kLeaves[] = {
    {"run", 0, "run FCEcho test on Sorvex adapter port", CmdRun},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, "run FCEcho Test on Sorvex adapter port", CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: set\r\n"}};  // deliberately "set"

constexpr NodeClass kClass = {kClassName, "FCEcho", kLeaves, kUsage};

}  // namespace

PhysicalPortFCEchoCmdsProcessor::PhysicalPortFCEchoCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
