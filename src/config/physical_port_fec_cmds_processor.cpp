#include "config/physical_port_fec_cmds_processor.h"

#include <cstdlib>
#include <memory>
#include <string>

#include "config/options.h"
#include "discovery/mezzanine.h"
#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr ReportFrame kFrame = {"FECInfo", "FEC", "FECList"};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, FEC read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, FEC update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    {kReadOnlyParameter, "Failed, Read-Only parameter for non 16Gbps or Unknown speed or mezz adapter"},
    kVirtualPort,
    kMaintenanceMode,
};

enum FecSetting : std::uint32_t { kOff = 0, kOn = 1 };

struct Free {
  void operator()(FWPrivateStats* stats) const { std::free(stats); }
};

// What a command reads of the device.
struct FecState {
  std::uint32_t setting = kOff;
  bool is_mezz = false;
  std::unique_ptr<FWPrivateStats, Free> stats;
};

StatusCode DisplayFECInfo(CommandRun& run, const FecState& state, RebootField reboot = {}) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, "Success", reboot);
  const ListField list(run.out, kFrame.field);
  const ListStructure element(run.out, kFrame.list_structure);
  run.out.WriteStringField("FEC_Status", BoolText(state.setting != kOff));
  // Intended: the low 32 bits of the 64-bit counters.
  run.out.WriteIntField("Correctable FEC errors",
                        static_cast<std::int64_t>(state.stats->correctable_fec_errors), kUnsigned32);
  run.out.WriteIntField("Uncorrectable FEC errors",
                        static_cast<std::int64_t>(state.stats->uncorrectable_fec_errors), kUnsigned32);
  return kSuccess;
}

StatusCode SelectPortWithFec(CommandRun& run, PortSelection& selected) {
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return status;
  if (IsAnyOf(selected.fc->pci, kElmOnly | kHazel | kIris | kDahlia)) return kSuccess;
  return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
}

StatusCode ReadSetting(const CommandRun& run, const FCProtocolEntry& fc, FecState& state) {
  return CallLibrary(run, "Get FEC info", kReadFailed,
                     [&] { return TORPI_FCGetFECSupportInfo(&fc.handle, &state.setting); });
}

StatusCode ReadStats(const CommandRun& run, const FCProtocolEntry& fc, FecState& state) {
  FWPrivateStats* stats = nullptr;
  std::uint32_t size = 0;
  const StatusCode status = CallLibrary(run, "Get firmware statistics", kReadFailed,
                                        [&] { return TORPI_GetFWPrivateStats(&fc.handle, &stats, &size); });
  if (status != kSuccess) return status;
  state.stats.reset(stats);
  return stats != nullptr ? kSuccess : run.Refuse(kReadFailed, "Firmware statistics are NULL");
}

// What the device reports is not the whole truth: on mezzanine cards and on links of 32 Gbps and more error
// correction is always on, on links below 16 Gbps it is always off.
void CorrectSetting(const FCProtocolEntry& fc, FecState& state) {
  if (state.is_mezz) {
    state.setting = kOn;
  } else if (IsLinkUp(fc)) {
    if (fc.port_speed < k16Gbps.code) state.setting = kOff;
    if (fc.port_speed >= k32Gbps.code) state.setting = kOn;
  }
}

bool MayChange(const FCProtocolEntry& fc, const FecState& state) {
  if (state.is_mezz) return false;
  return !IsLinkUp(fc) || (fc.port_speed >= k16Gbps.code && fc.port_speed < k32Gbps.code);
}

// Intended: the two commands read in orders of their own.

StatusCode ReadForGet(const CommandRun& run, const FCProtocolEntry& fc, FecState& state) {
  StatusCode status = ReadSetting(run, fc, state);
  if (status == kSuccess) status = ReadIsMezzAdapter(run, fc, state.is_mezz);
  if (status == kSuccess) status = ReadStats(run, fc, state);
  CorrectSetting(fc, state);
  return status;
}

StatusCode ReadForSet(const CommandRun& run, const FCProtocolEntry& fc, FecState& state) {
  StatusCode status = ReadSetting(run, fc, state);
  if (status == kSuccess) status = ReadStats(run, fc, state);
  if (status == kSuccess) status = ReadIsMezzAdapter(run, fc, state.is_mezz);
  CorrectSetting(fc, state);
  return status;
}

StatusCode SetStatus(const CommandRun& run, const FCProtocolEntry& fc, const std::string& value,
                     FecState& state) {
  if (!MayChange(fc, state)) {
    return run.Refuse(kReadOnlyParameter, "--fec-status=%s: the setting cannot be changed", value.c_str());
  }
  const auto on = ReadTrueFalse(value);
  if (!on.has_value()) {
    return run.Refuse(kInvalidParameter, "--fec-status=%s: %s", value.c_str(), kNotTrueOrFalse.reason);
  }
  state.setting = *on ? kOn : kOff;
  return CallLibrary(run, "Set FEC info", kUpdateFailed,
                     [&] { return TORPI_FCSetFECSupportInfo(&fc.handle, state.setting); });
}

StatusCode ResetCounters(const CommandRun& run, const FCProtocolEntry& fc, const std::string& value) {
  if (!EqualNoCase(value, "reset")) {
    return run.Refuse(kInvalidParameter, "--reset=%s: not the word reset", value.c_str());
  }
  return CallLibrary(run, "Reset FEC counters", kUpdateFailed,
                     [&] { return TORPI_ResetFECCounters(&fc.handle); });
}

// Does what the options ask for, one after the other: a failure of the second leaves the first one done.
StatusCode TakeOptions(const CommandRun& run, const FCProtocolEntry& fc, FecState& state, bool& changed) {
  std::string value;
  if (FindOption(run.words, "--fec-status", "-f", value)) {
    if (const StatusCode status = SetStatus(run, fc, value, state); status != kSuccess) return status;
    changed = true;
  }
  if (FindOption(run.words, "--reset", "-r", value)) {
    if (const StatusCode status = ResetCounters(run, fc, value); status != kSuccess) return status;
    changed = true;
  }
  return kSuccess;
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPortWithFec(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  FecState state;
  if (const StatusCode status = ReadForGet(run, *selected.fc, state); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayFECInfo(run, state);
}

StatusCode CmdSetCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return run.DisplayError(code, kNoRebootNeeded); };

  PortSelection selected;
  if (const StatusCode status = SelectPortWithFec(run, selected); status != kSuccess) return fail(status);
  FecState state;
  if (const StatusCode status = ReadForSet(run, *selected.fc, state); status != kSuccess) return fail(status);
  bool changed = false;
  if (const StatusCode status = TakeOptions(run, *selected.fc, state, changed); status != kSuccess) {
    return fail(status);
  }
  // Intended: the counters are those from before a reset.
  return DisplayFECInfo(run, state, {RebootField::kAfterMessage, changed});
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex adapter's FEC information", "Usage: get\r\n", &CmdGetCommon},
    {"set", "set Sorvex adapter's FEC information", "Usage: set\r\n", &CmdSetCommon},
};

}  // namespace

NodeClass PhysicalPortFECCmdsProcessor() {
  return {
      .name = "PhysicalPortFECCmdsProcessor",
      .help_words = "FEC",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
