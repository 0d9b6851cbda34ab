#include "config/physical_port_hba_params_cmds_processor.h"

#include "config/hba_params/hba_params.h"
#include "discovery/port_lookup.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, NVRAM read failed"},
    kHostNotFound,
    {kDelayNotAllowed,
     "Failed, Interrupt Delay Timer value > 0 not supported for Operation Mode value "
     "Interrupt_For_Every_I/O_Completion"},
    {kTooFastForLoopOnly,
     "Failed, Connection Options value Loop_Only not supported for data rate value 16 Gbps and above"},
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    {kReadOnlyParameter, "Failed, Read-Only parameter"},
    kVirtualPort,
    kMaintenanceMode,
};

// The documents of the commands that show no parameters.
constexpr const char* kRestoreStructure = "RestoreDefaultsInfo";
constexpr const char* kSaveStructure = "HBAParametersSave";

StatusCode DisplayRestoreDefaultsError(CommandRun& run, StatusCode status) {
  const FunctionScope function(run, __func__);
  const Document document(run, kRestoreStructure, run.MessageFor(status), kNoRebootNeeded);
  return status;
}

StatusCode DisplaySaveError(CommandRun& run, StatusCode status) {
  const FunctionScope function(run, __func__);
  const Document document(run, kSaveStructure, run.MessageFor(status));
  return status;
}

StatusCode CmdRestoreDefaultsCommon(CommandRun& run) {
  PortSelection selected;
  StatusCode status = SelectPhysicalPort(run, selected);
  if (status == kSuccess) {
    status = CallLibrary(run, "Restore default NVRAM", kUpdateFailed,
                         [&] { return TORPI_RestoreDefaultNVRAM(&selected.fc->handle); });
  }
  if (status != kSuccess) return DisplayRestoreDefaultsError(run, status);
  const Document document(run, kRestoreStructure, "Success",
                          {RebootField::kAfterMessage, IsRebootRequired(run)});
  return kSuccess;
}

StatusCode CmdSaveCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) {
    return DisplaySaveError(run, status);
  }
  if (run.words.size() < 2)
    return DisplaySaveError(run, run.Refuse(kInvalidParameter, "file name not given"));
  const StatusCode status = CallLibrary(run, "Save NVRAM to file", kReadFailed, [&] {
    return TORPI_SaveSingleAdapterNVRAMToFile(&selected.fc->handle, run.words[1].c_str());
  });
  if (status != kSuccess) return DisplaySaveError(run, status);
  const Document document(run, kSaveStructure, "Success");
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex HBA Parameters information", "Usage: get\r\n", &CmdGetCommon<HbaParams>},
    {"setFile", "set Sorvex HBA Parameters information in a local cache file", "Usage: setFile\r\n",
     &CmdSetFileCommon<HbaParams>},
    {"set", "set Sorvex HBA Parameters information", "Usage: set\r\n", &CmdSetCommon<HbaParams>},
    {"restoreDefaults", "Restore default values of Sorvex HBA Parameters", "Usage: restoreDefaults\r\n",
     &CmdRestoreDefaultsCommon},
    // The two forms describe themselves in different words.
    {.word = "save",
     .description = "save Sorvex HBA Parameters information in a text file",
     .usage = "Usage: save\r\n",
     .run = &CmdSaveCommon,
     .cli_description = "Save Sorvex HBA Parameters information in a file"},
};

}  // namespace

NodeClass PhysicalPortHBAParamsCmdsProcessor() {
  return {
      .name = "PhysicalPortHBAParamsCmdsProcessor",
      .help_words = "hbaparams",
      .commands = TableOf<kCommands>(),
      .frame = kHbaParamsFrame,
      .messages = TableOf<kMessages>(),
  };
}
