#include "port/physical_port_fw_dump_cmds_processor.h"

#include <cstdio>

#include "discovery/port_lookup.h"
#include "framework/heap_buffer.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"
#include "runtime/sync.h"

namespace {

constexpr StatusMessage kMessages[] = {
    kSuccess,          {kWrongWordCount, "Failed, Parameter Error"},
    kInvalidParameter, {kReadFailed, "Failed, FW Dump read failed"},
    kHostNotFound,     kFileNotFound,
    kAdapterNotFound,  kFeatureNotSupported,
    kMemoryError,      {kResponseNotAvailable, "Failed, FW Dump Not Available"},
};

constexpr LibraryAnswer kAnswers[] = {
    {kLibraryMaintenanceMode, kReadFailed},  // intended: no status of its own here
    {kDumpInvalidParameter, kInvalidParameter}, {kDumpNoMemory, kMemoryError},
    {kDumpParameterError, kWrongWordCount},     {kDumpNotAvailable, kResponseNotAvailable},
};

StatusCode WriteDocument(CommandRun& run, StatusCode code) {
  const Document document(run, "FwDumpInfo", run.MessageFor(code));
  return code;
}

StatusCode DisplayError(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  return WriteDocument(run, code);
}

StatusCode DisplayFwDumpInfo(CommandRun& run) {
  const FunctionScope function(run, __func__);
  return WriteDocument(run, kSuccess);
}

// Only a file that cannot be opened is a failure. Intended: how much could be written, or reaches the disk,
// does not count. The file is written under its own name, so a run that ends early leaves a part of it.
StatusCode WriteDump(const CommandRun& run, const char* path, const void* dump, std::uint32_t size) {
  std::FILE* const file = std::fopen(path, "we");
  if (file == nullptr) return run.Refuse(kFileNotFound, "Failed to open %s file", path);
  if (dump != nullptr) std::fwrite(dump, 1, size, file);
  // A dump is taken after a failure: it has to outlast the next one.
  if (std::fflush(file) == 0) SyncDescriptor(fileno(file));
  std::fclose(file);
  SyncFolderOf(path);
  return kSuccess;
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return DisplayError(run, status);
  }
  // Before the library is asked, so that no dump is fetched for nothing.
  if (run.words.size() < 2) return DisplayError(run, run.Refuse(kInvalidParameter, "dump file not given"));

  void* buffer = nullptr;
  std::uint32_t size = 0;
  StatusCode status = CallLibrary(run, "Get Firmware Dump", kAnswers, kReadFailed, [&] {
    return TORPI_SDGetFwDump2(selected.fc->handle.sd_handle, 0, &buffer, &size);
  });
  const HeapBuffer<void> dump(buffer);
  if (status == kSuccess) status = WriteDump(run, run.words[1].c_str(), dump.get(), size);
  return status == kSuccess ? DisplayFwDumpInfo(run) : DisplayError(run, status);
}

// The usage text leaves out the port identifier and the file, which the command needs.
constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Firmware Dump information", "Usage: get\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass PhysicalPortFwDumpCmdsProcessor() {
  return {
      .name = "PhysicalPortFwDumpCmdsProcessor",
      .help_words = "Port fwdump",
      .commands = TableOf<kCommands>(),
      .messages = TableOf<kMessages>(),
  };
}
