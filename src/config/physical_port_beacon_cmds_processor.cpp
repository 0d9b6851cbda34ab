#include "config/physical_port_beacon_cmds_processor.h"

#include "config/options.h"
#include "discovery/mezzanine.h"
#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr const char* kStructure = "BeaconInfo";
constexpr const char* kStateField = "Beacon State";

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, Beacon read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, Beacon update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kVirtualPort,
    kMaintenanceMode,
};

constexpr CodeText kStates[] = {{0, "OFF"}, {1, "ON"}};

StatusCode DisplayError(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  const Document document(run, kStructure, run.MessageFor(code));
  run.out.WriteStringField(kStateField, "Unknown");
  return code;
}

StatusCode DisplayBeaconInfo(CommandRun& run, std::uint32_t state) {
  const FunctionScope function(run, __func__);
  const Document document(run, kStructure, "Success");
  run.out.WriteStringField(kStateField, TextOfCode(kStates, state));
  return kSuccess;
}

StatusCode CheckAdapter(const CommandRun& run, const FCProtocolEntry& fc) {
  bool is_mezz = false;
  if (const StatusCode status = ReadIsMezzAdapter(run, fc, is_mezz); status != kSuccess) return status;
  const bool has_beacon = IsAnyOf(fc.pci, kAster | kBirch | kElmOnly | kHazel | kIris | kDahlia);
  if (!is_mezz && has_beacon) return kSuccess;
  return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
}

// Shows the device's state, also after a request for another one.
StatusCode ShowState(CommandRun& run, const FCProtocolEntry& fc) {
  std::uint32_t state = 0;
  const StatusCode status = CallLibrary(run, "Get beacon status", kReadFailed,
                                        [&] { return TORPI_GetAdapterBeaconStatus(&fc.handle, &state); });
  return status == kSuccess ? DisplayBeaconInfo(run, state) : DisplayError(run, status);
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  StatusCode status = SelectPhysicalPort(run, selected);
  if (status == kSuccess) status = CheckAdapter(run, *selected.fc);
  return status == kSuccess ? ShowState(run, *selected.fc) : DisplayError(run, status);
}

StatusCode CmdSetCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplayError(run, code); };

  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return fail(status);
  const FCProtocolEntry& fc = *selected.fc;
  // Without asking the library for anything.
  if (run.words.size() < 2) return fail(run.Refuse(kInvalidParameter, "beacon state not given"));
  if (const StatusCode status = CheckAdapter(run, fc); status != kSuccess) return fail(status);
  const CodeText* const wanted = FindCode(kStates, run.words[1]);
  if (wanted == nullptr) {
    return fail(run.Refuse(kInvalidParameter, "beacon state %s is unknown", run.words[1].c_str()));
  }
  const StatusCode status = CallLibrary(run, "Update beacon status", kUpdateFailed, [&] {
    return TORPI_UpdateAdapterBeaconStatus(&fc.handle, wanted->code);
  });
  return status == kSuccess ? ShowState(run, fc) : fail(status);
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex adapter's Beacon information", "Usage: get\r\n", &CmdGetCommon},
    {"set", "set Sorvex adapter's Beacon information", "Usage: set\r\n", &CmdSetCommon},
};

}  // namespace

NodeClass PhysicalPortBeaconCmdsProcessor() {
  return {
      .name = "PhysicalPortBeaconCmdsProcessor",
      .help_words = "Beacon",
      .commands = TableOf<kCommands>(),
      .messages = TableOf<kMessages>(),
  };
}
