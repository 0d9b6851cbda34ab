#include "diag/physical_port_loopback_cmds_processor.h"

#include <string>
#include <string_view>

#include "diag/diagnostic_messages.h"
#include "diag/diagnostic_words.h"
#include "diag/pass_loop.h"
#include "diag/pattern_passes.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/inline_text.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr ReportFrame kFrame = {"LoopbackTestInfo", "LoopbackTestResult", "LoopbackTestResultList"};

constexpr StatusMessage kLoopbackTypeNotSupported = {kTestTypeNotSupported,
                                                     "Failed, Loopback type not supported for this adapter"};
constexpr auto kMessages =
    DiagnosticMessages(kLoopbackTypeNotSupported, kPatternWithoutHyphens, kSpeedBelow16);

constexpr std::int32_t kMaxCount = 65535;
constexpr std::uint32_t kDataSizes[] = {8,    16,   32,   64,   128,   256,   512,
                                        1024, 2048, 4096, 8192, 16384, 32768, 65535};
constexpr PassLimits kPassLimits = {.max_increment = 65535, .data_sizes = kDataSizes};

// Two words of this test alone, the second in another place than in the read/write buffer test.
constexpr std::size_t kTypeWord = 5;
constexpr std::size_t kPatternWord = 6;

struct TypeWord {
  InlineText<10> word;
  LoopbackType type;
};

constexpr TypeWord kTypes[] = {
    {"Internal", LoopbackType::kInternal},
    {"FCoE_Echo", LoopbackType::kFcoeEcho},
    {"External", LoopbackType::kExternal},
};

// Intended: every other word, "Internal_10bit" among them, means the type of number 0.
LoopbackType TypeOf(std::string_view word) {
  for (const TypeWord& row : kTypes) {
    if (EqualNoCase(word, row.word)) return row.type;
  }
  return LoopbackType::kInternal10Bit;
}

bool IsTypeSupported(LoopbackType type, const PciIdentity& pci) {
  if (type == LoopbackType::kFcoeEcho) return IsDeviceGroupFernOnly(pci);
  if (type == LoopbackType::kInternal10Bit) return IsAnyOf(pci, kAster | kBirch);
  return true;
}

void DisplayLoopbackTestResult(CommandRun& run, const LoopbackResult& result, const PassCounters& counters) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, "Success");
  const ListField list(run.out, kFrame.field);
  const ListStructure element(run.out, kFrame.list_structure);
  run.out.WriteStringField("Test Status", std::string(result.test_status.View()).c_str());
  run.out.WriteIntField("Crc Error", result.crc_errors, kUnsigned32);
  run.out.WriteIntField("Disparity Error", result.disparity_errors, kUnsigned32);
  run.out.WriteIntField("Frame Length Error", result.frame_length_errors, kUnsigned32);
  WriteCounters(run.out, counters);
}

StatusCode ReadTestCount(const CommandRun& run, DiagTestRequest& request) {
  // Intended: judged as a signed 32-bit number, so a negative one passes.
  const auto count = static_cast<std::int32_t>(ReadDecimal(run.words, kTestCountWord));
  if (count == 0 || count > kMaxCount) return RefuseWord(run, kTestCountWord, "test count");
  SetTestCount(request, static_cast<std::uint32_t>(count));
  return kSuccess;
}

StatusCode ReadType(const CommandRun& run, const PciIdentity& pci, DiagTestRequest& request) {
  request.loopback_type = TypeOf(WordAt(run.words, kTypeWord));
  if (IsTypeSupported(request.loopback_type, pci)) return kSuccess;
  return run.Refuse(kTestTypeNotSupported, "Loopback type not supported for this adapter");
}

// Reads all words in their order, and checks the maintenance mode last.
StatusCode ReadRequest(const CommandRun& run, const FCProtocolEntry& fc, DiagTestRequest& request,
                       std::uint32_t& increment) {
  StatusCode status = ReadTestCount(run, request);
  if (status == kSuccess) status = ReadPassWords(run, kPassLimits, request, increment);
  if (status == kSuccess) status = ReadType(run, fc.pci, request);
  if (status == kSuccess) status = ReadDataPattern(run, kPatternWord, request);
  if (status == kSuccess) status = CheckMaintenanceMode(run, fc);
  request.connection_mode = fc.connection_mode;
  return status;
}

StatusCode CmdRunCommon(CommandRun& run) {
  PortSelection selected;
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  StatusCode status = SelectPhysicalPort(run, selected);
  if (status == kSuccess) status = ReadRequest(run, *selected.fc, request, increment);
  if (status != kSuccess) return run.DisplayError(status);

  LoopbackResult result = {};
  PassCounters counters;
  const auto call = [&] { result = TORPI_DiagnosticsLoopBackTest(&selected.fc->handle, &request); };
  const auto go_on = [&] {
    return CountPass(result.test_status.View() == kPassSucceeded, request.on_error, counters);
  };
  status = RunPasses(run, increment, call, go_on);
  if (status != kSuccess) return run.DisplayError(status);
  DisplayLoopbackTestResult(run, result, counters);
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {.word = "run",
     .description = "run Loopback test on Sorvex adapter port",
     .usage = "Usage: run\r\n",
     .run = &CmdRunCommon,
     .cli_description = "run Loopback Test on Sorvex adapter port"},
};

}  // namespace

NodeClass PhysicalPortLoopbackCmdsProcessor() {
  return {
      .name = "PhysicalPortLoopbackCmdsProcessor",
      .help_words = "LoopbackTest",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
