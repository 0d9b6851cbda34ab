#include "diag/physical_port_loopback_cmds_processor.h"

#include <string>

#include "diag/data_test.h"
#include "diag/test_messages.h"
#include "diag/test_passes.h"
#include "diag/test_port.h"
#include "diag/test_words.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/report.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortLoopbackCmdsProcessor";

constexpr ReportFrame kFrame = {"LoopbackTestInfo", "LoopbackTestResult", "LoopbackTestResultList"};

constexpr StatusMessage kMessages[] = {
    {kWrongWordCount, "Failed, Loopback type not supported for this adapter"},
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
    kNotInDiagnosticsMode,
    kVirtualPort,
    kMaintenanceMode,
};

constexpr std::int32_t kMaxCount = 65535;
constexpr std::uint32_t kMaxIncrement = 65535;
constexpr std::uint32_t kDataSizes[] = {8,    16,   32,   64,   128,   256,   512,
                                        1024, 2048, 4096, 8192, 16384, 32768, 65535};

struct TypeWord {
  const char* word;
  LoopbackType type;
};

constexpr TypeWord kTypes[] = {
    {"Internal", LoopbackType::kInternal},
    {"FCoE_Echo", LoopbackType::kFcoeEcho},
    {"External", LoopbackType::kExternal},
};

// Every other word, "Internal_10bit" among them, deliberately means the type of number 0.
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

// Reads all words in their order, and looks at the maintenance mode last.
StatusCode ReadRequest(const Words& words, const FCProtocolEntry& fc, DiagTestRequest& request,
                       std::uint32_t& increment) {
  // Deliberately judged as a signed 32-bit number: a negative one passes.
  const auto count = static_cast<std::int32_t>(ReadDecimal(words, 1));
  if (count == 0 || count > kMaxCount) return kInvalidParameter;
  SetTestCount(request, static_cast<std::uint32_t>(count));
  if (const StatusCode status = ReadPassWords(words, kMaxIncrement, kDataSizes, request, increment);
      status != kSuccess) {
    return status;
  }
  request.loopback_type = TypeOf(WordAt(words, 5));
  if (!IsTypeSupported(request.loopback_type, fc.pci)) return kWrongWordCount;
  if (const StatusCode status = ReadDataPattern(words, 6, request); status != kSuccess) return status;
  if (IsInMaintenanceMode(fc)) return kMaintenanceMode;
  request.connection_mode = fc.connection_mode;
  return kSuccess;
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

void DisplayLoopbackTestResult(Serializer& out, const LoopbackResult& result, const PassCounters& counters,
                               OutputMode mode) {
  const Document document(out, mode, kFrame.structure, "Success");
  const ListField list(out, kFrame.field);
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Test Status", std::string(result.test_status.View()).c_str());
  out.WriteIntField("Crc Error", result.crc_errors, kUnsigned32);
  out.WriteIntField("Disparity Error", result.disparity_errors, kUnsigned32);
  out.WriteIntField("Frame Length Error", result.frame_length_errors, kUnsigned32);
  out.WriteIntField("Test Iteration", counters.iteration, kUnsigned32);
  out.WriteIntField("Success Count", counters.succeeded, kUnsigned32);
  out.WriteIntField("Failure Count", counters.failed, kUnsigned32);
}

StatusCode CmdRunCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  DiagTestRequest request = {};
  std::uint32_t increment = 0;
  StatusCode status = SelectTestPort(kClassName, words, fc);
  if (status == kSuccess) status = ReadRequest(words, *fc, request, increment);
  if (status != kSuccess) return DisplayError(out, status, mode);

  LoopbackResult result = {};
  PassCounters counters;
  const auto call = [&] { result = TORPI_DiagnosticsLoopBackTest(&fc->handle, &request); };
  const auto go_on = [&] {
    return CountPass(result.test_status.View() == kPassSucceeded, request.on_error, counters);
  };
  if (!RunPasses(kClassName, mode, increment, call, go_on)) return DisplayError(out, kFileNotFound, mode);
  DisplayLoopbackTestResult(out, result, counters, mode);
  return kSuccess;
}

constexpr auto CmdRun = &InXml<CmdRunCommon>;
constexpr auto CmdRunCli = &InText<CmdRunCommon>;

constexpr Leaf kLeaves[] = {
    {"run", 0, "run Loopback test on Sorvex adapter port", CmdRun},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"runcli", 2, "run Loopback Test on Sorvex adapter port", CmdRunCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: run\r\n"}};

constexpr NodeClass kClass = {kClassName, "LoopbackTest", kLeaves, kUsage};

}  // namespace

PhysicalPortLoopbackCmdsProcessor::PhysicalPortLoopbackCmdsProcessor(CmdProcessor* parent,
                                                                     const SubNode& self)
    : CommandNode(parent, self, kClass) {}
