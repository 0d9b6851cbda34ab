#include "diag/physical_port_rw_buffer_cmds_processor.h"

#include <string>

#include "diag/diagnostic_messages.h"
#include "diag/diagnostic_words.h"
#include "diag/pass_loop.h"
#include "diag/pattern_passes.h"
#include "discovery/host_walk.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr ReportFrame kFrame = {"RWBufferTestInfo", "RWBufferTestResult", "RWBufferTestResultList"};

constexpr StatusMessage kRWBufferTypeNotSupported = {kTestTypeNotSupported,
                                                     "Failed, RWBuffer type not supported for this adapter"};
constexpr StatusMessage kNoResultList = {kResponseNotAvailable, "Failed, Response data not available"};
constexpr auto kMessages =
    DiagnosticMessages(kRWBufferTypeNotSupported, kPatternWithoutHyphens, kSpeedBelow16, kNoResultList);

constexpr std::uint32_t kMaxCount = 10000;
constexpr std::uint32_t kDataSizes[] = {8, 16, 32, 64, 128};
constexpr PassLimits kPassLimits = {.max_increment = 10000, .data_sizes = kDataSizes};

constexpr std::size_t kPatternWord = 5;

// Holds the list of one pass at a time. Each goes back to the library, outside any bracket.
class ResultList {
 public:
  ResultList() = default;
  ~ResultList() { Free(); }
  ResultList(const ResultList&) = delete;
  ResultList& operator=(const ResultList&) = delete;

  // Frees the list and takes that of the next pass, null for none.
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

void WriteResult(Serializer& out, const RWBufferResult& result, const PassCounters& counters) {
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Test Status", std::string(result.test_status.View()).c_str());
  out.WriteStringField("Port ID", result.port_id.Text().c_str());
  out.WriteIntField("Data Miscompare", result.data_miscompares, kUnsigned32);
  out.WriteIntField("Link Failure", result.link_failures, kUnsigned32);
  out.WriteIntField("Loss Of Sync", result.sync_losses, kUnsigned32);
  out.WriteIntField("Loss Of Signal", result.signal_losses, kUnsigned32);
  out.WriteIntField("Invalid CRC", result.invalid_crcs, kUnsigned32);
  WriteCounters(out, counters);
}

// Intended: the counters of the run are repeated with every remote port.
void DisplayRWBufferTestResult(CommandRun& run, const RWBufferResult* first, const PassCounters& counters) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, "Success");
  const ListField list(run.out, kFrame.field);
  for (const RWBufferResult& result : Chain<RWBufferResult>(first)) WriteResult(run.out, result, counters);
}

// Reads all words in their order, and checks the maintenance mode last.
StatusCode ReadRequest(const CommandRun& run, const FCProtocolEntry& fc, DiagTestRequest& request,
                       std::uint32_t& increment) {
  std::uint32_t count = 0;
  StatusCode status = ReadCount(run, kTestCountWord, "test count", kMaxCount, count);
  SetTestCount(request, count);
  if (status == kSuccess) status = ReadPassWords(run, kPassLimits, request, increment);
  if (status == kSuccess) status = ReadDataPattern(run, kPatternWord, request);
  if (status == kSuccess) status = CheckMaintenanceMode(run, fc);
  return status;
}

StatusCode CmdRunCommon(CommandRun& run) {
  PortSelection selected;
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  StatusCode status = SelectPhysicalPort(run, selected);
  if (status == kSuccess) status = ReadRequest(run, *selected.fc, request, increment);
  if (status != kSuccess) return run.DisplayError(status);

  ResultList results;
  RWBufferResult* answer = nullptr;
  PassCounters counters;
  const auto call = [&] { answer = TORPI_DiagnosticsReadWriteBufferTest(&selected.fc->handle, &request); };
  const auto go_on = [&] {
    results.Replace(answer);
    if (answer == nullptr) return false;
    return CountPass(answer->test_status.View() == kPassSucceeded, request.on_error, counters);
  };
  status = RunPasses(run, increment, call, go_on);
  if (status == kSuccess && results.First() == nullptr) {
    status = run.Refuse(kResponseNotAvailable, "Response data not available");
  }
  if (status != kSuccess) return run.DisplayError(status);
  DisplayRWBufferTestResult(run, results.First(), counters);
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {.word = "run",
     .description = "run Read Write Buffer test on Sorvex adapter port",
     .usage = "Usage: run\r\n",
     .run = &CmdRunCommon,
     .cli_description = "run Read Write Buffer Test on Sorvex adapter port"},
};

}  // namespace

NodeClass PhysicalPortRWBufferCmdsProcessor() {
  return {
      .name = "PhysicalPortRWBufferCmdsProcessor",
      .help_words = "RWBuffer",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
