#include "port/physical_port_fw_dump_cmds_processor.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "discovery/port_lookup.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortFwDumpCmdsProcessor";
constexpr const char* kStructure = "FwDumpInfo";

constexpr StatusMessage kMessages[] = {
    kSuccess,          {kWrongWordCount, "Failed, Parameter Error"},
    kInvalidParameter, {kReadFailed, "Failed, FW Dump read failed"},
    kHostNotFound,     kFileNotFound,
    kAdapterNotFound,  kFeatureNotSupported,
    kMemoryError,      {kResponseNotAvailable, "Failed, FW Dump Not Available"},
};

// In maintenance mode the dump deliberately fails as for any other reason.
constexpr LibraryAnswer kAnswers[] = {
    {kLibraryMaintenanceMode, kReadFailed},
    {kDumpInvalidParameter, kInvalidParameter},
    {kDumpNoMemory, kMemoryError},
    {kDumpParameterError, kWrongWordCount},
    {kDumpNotAvailable, kResponseNotAvailable},
};

struct Free {
  void operator()(void* block) const { std::free(block); }
};

// Writes the document of a success or a failure and returns its code.
StatusCode DisplayFwDumpInfo(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, kStructure, MessageFor(kMessages, code));
  return code;
}

// Deliberately without a look at how much could be written: only a file that cannot be opened is a failure.
StatusCode WriteDump(const char* path, const void* dump, std::uint32_t size) {
  std::FILE* const file = std::fopen(path, "we");
  if (file == nullptr) {
    DebugLogLevel(kDebugFailure, "%s::%s: Failed to open %s file", kClassName, __func__, path);
    return kFileNotFound;
  }
  if (dump != nullptr) std::fwrite(dump, 1, size, file);
  std::fclose(file);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: Get phy port failed err=%u", kClassName, __func__, status);
    return DisplayFwDumpInfo(out, status, mode);
  }
  // Without a file no dump is fetched for nothing.
  if (words.size() < 2) return DisplayFwDumpInfo(out, kInvalidParameter, mode);

  void* buffer = nullptr;
  std::uint32_t size = 0;
  const StatusCode status = CallLibrary(kClassName, "Get Firmware Dump", kAnswers, kReadFailed, [&] {
    return TORPI_SDGetFwDump2(selected.fc->handle.sd_handle, 0, &buffer, &size);
  });
  const std::unique_ptr<void, Free> dump(buffer);
  if (status != kSuccess) return DisplayFwDumpInfo(out, status, mode);
  return DisplayFwDumpInfo(out, WriteDump(words[1].c_str(), dump.get(), size), mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex Firmware Dump information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get\r\n"}};  // deliberately without the identifier and the file

constexpr NodeClass kClass = {kClassName, "Port fwdump", kLeaves, kUsage};

}  // namespace

PhysicalPortFwDumpCmdsProcessor::PhysicalPortFwDumpCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
