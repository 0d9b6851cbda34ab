#include "diag/physical_port_rw_buffer_cmds_processor.h"

#include <string>

#include "diag/data_test.h"
#include "diag/test_messages.h"
#include "diag/test_passes.h"
#include "diag/test_port.h"
#include "diag/test_words.h"
#include "discovery/host_walk.h"
#include "framework/device_library/calls.h"
#include "framework/report.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortRWBufferCmdsProcessor";

constexpr ReportFrame kFrame = {"RWBufferTestInfo", "RWBufferTestResult", "RWBufferTestResultList"};

constexpr StatusMessage kMessages[] = {
    {kWrongWordCount, "Failed, RWBuffer type not supported for this adapter"},
    kInvalidParameter,
    kPatternWithoutHyphens,
    kDPortReadFailed,
    kHostNotFound,
    kFileNotFound,
    kDPortUpdateFailed,
    kAdapterNotFound,
    kFeatureNotSupported,
    kLinkDown,
    kSpeedBelow16,
    {kResponseNotAvailable, "Failed, Response data not available"},
    kNotInDiagnosticsMode,
    kVirtualPort,
    kMaintenanceMode,
};

constexpr std::uint32_t kMaxCount = 10000;
constexpr std::uint32_t kMaxIncrement = 10000;
constexpr std::uint32_t kDataSizes[] = {8, 16, 32, 64, 128};

// Holds the list of one pass at a time; each goes back to the library, outside any bracket.
class ResultList {
 public:
  ResultList() = default;
  ~ResultList() { Free(); }
  ResultList(const ResultList&) = delete;
  ResultList& operator=(const ResultList&) = delete;

  // Takes over the list of the next pass, null for none, and frees the one that it replaces.
  void Replace(RWBufferResult* next) {
    Free();
    first_ = next;
  }

  const RWBufferResult* First() const { return first_; }

 private:
  void Free() {
    if (first_ != nullptr) TORPI_FreeRWBufferTestResultList(first_);
  }

  RWBufferResult* first_ = nullptr;
};

// Reads all words in their order, and looks at the maintenance mode last.
StatusCode ReadRequest(const Words& words, const FCProtocolEntry& fc, DiagTestRequest& request,
                       std::uint32_t& increment) {
  std::uint32_t count = 0;
  if (!ReadCount(words, 1, kMaxCount, count)) return kInvalidParameter;
  SetTestCount(request, count);
  if (const StatusCode status = ReadPassWords(words, kMaxIncrement, kDataSizes, request, increment);
      status != kSuccess) {
    return status;
  }
  if (const StatusCode status = ReadDataPattern(words, 5, request); status != kSuccess) return status;
  return IsInMaintenanceMode(fc) ? kMaintenanceMode : kSuccess;
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

void WriteResult(Serializer& out, const RWBufferResult& result, const PassCounters& counters) {
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Test Status", std::string(result.test_status.View()).c_str());
  out.WriteStringField("Port ID", result.port_id.Text().c_str());
  out.WriteIntField("Data Miscompare", result.data_miscompares, kUnsigned32);
  out.WriteIntField("Link Failure", result.link_failures, kUnsigned32);
  out.WriteIntField("Loss Of Sync", result.sync_losses, kUnsigned32);
  out.WriteIntField("Loss Of Signal", result.signal_losses, kUnsigned32);
  out.WriteIntField("Invalid CRC", result.invalid_crcs, kUnsigned32);
  out.WriteIntField("Test Iteration", counters.iteration, kUnsigned32);
  out.WriteIntField("Success Count", counters.succeeded, kUnsigned32);
  out.WriteIntField("Failure Count", counters.failed, kUnsigned32);
}

// The counters of the run deliberately stand with every port.
void DisplayRWBufferTestResult(Serializer& out, const RWBufferResult* first, const PassCounters& counters,
                               OutputMode mode) {
  const Document document(out, mode, kFrame.structure, "Success");
  const ListField list(out, kFrame.field);
  for (const RWBufferResult& result : Chain<RWBufferResult>(first)) WriteResult(out, result, counters);
}

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  StatusCode status = SelectTestPort(kClassName, words, fc);
  if (status == kSuccess) status = ReadRequest(words, *fc, request, increment);
  if (status != kSuccess) return DisplayError(out, status, mode);

  ResultList results;
  RWBufferResult* answer = nullptr;
  PassCounters counters;
  const auto call = [&] { answer = TORPI_DiagnosticsReadWriteBufferTest(&fc->handle, &request); };
  const auto go_on = [&] {
    results.Replace(answer);
    if (answer == nullptr) return false;
    return CountPass(answer->test_status.View() == kPassSucceeded, request.on_error, counters);
  };
  if (!RunPasses(kClassName, mode, increment, call, go_on)) return DisplayError(out, kFileNotFound, mode);
  if (results.First() == nullptr) return DisplayError(out, kResponseNotAvailable, mode);
  DisplayRWBufferTestResult(out, results.First(), counters, mode);
  return kSuccess;
}

constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr Leaf kLeaves[] = {
    {"run", 0, "run Read Write Buffer test on Sorvex adapter port", CmdRun},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, "run Read Write Buffer Test on Sorvex adapter port", CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: run\r\n"}};

constexpr NodeClass kClass = {kClassName, "RWBuffer", kLeaves, kUsage};

}  // namespace

PhysicalPortRWBufferCmdsProcessor::PhysicalPortRWBufferCmdsProcessor(CmdProcessor* parent,
                                                                     const SubNode& self)
    : CommandNode(parent, self, kClass) {}
