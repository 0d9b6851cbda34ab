#include "config/physical_port_fec_cmds_processor.h"

#include <cstdlib>
#include <memory>
#include <string>

#include "config/staged_options.h"
#include "discovery/mezzanine.h"
#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortFECCmdsProcessor";

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

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode, RebootField reboot = {}) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code), reboot);
  return code;
}

StatusCode DisplayFECInfo(Serializer& out, const FecState& state, OutputMode mode, RebootField reboot = {}) {
  const Document document(out, mode, kFrame.structure, "Success", reboot);
  const ListField list(out, kFrame.field);
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("FEC_Status", BoolText(state.setting != kOff));
  // Deliberately the low 32 bits of the 64-bit counters.
  out.WriteIntField("Correctable FEC errors", static_cast<std::int64_t>(state.stats->correctable_fec_errors),
                    kUnsigned32);
  out.WriteIntField("Uncorrectable FEC errors",
                    static_cast<std::int64_t>(state.stats->uncorrectable_fec_errors), kUnsigned32);
  return kSuccess;
}

StatusCode OpenPort(const Words& words, PortSelection& selected) {
  if (const StatusCode status = GetPhysicalPortFromPortString(kClassName, words, selected);
      status != kSuccess) {
    return status;
  }
  if (IsAnyOf(selected.fc->pci, kElmOnly | kHazel | kIris | kDahlia)) return kSuccess;
  DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
  return kFeatureNotSupported;
}

StatusCode ReadSetting(const FCProtocolEntry& fc, FecState& state) {
  return CallLibrary(kClassName, "Get FEC info", kReadFailed,
                     [&] { return TORPI_FCGetFECSupportInfo(&fc.handle, &state.setting); });
}

StatusCode ReadStats(const FCProtocolEntry& fc, FecState& state) {
  FWPrivateStats* stats = nullptr;
  std::uint32_t size = 0;
  const StatusCode status = CallLibrary(kClassName, "Get firmware statistics", kReadFailed,
                                        [&] { return TORPI_GetFWPrivateStats(&fc.handle, &stats, &size); });
  if (status != kSuccess) return status;
  state.stats.reset(stats);
  return stats == nullptr ? kReadFailed : kSuccess;
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

// The two commands deliberately read in orders of their own.

StatusCode ReadForGet(const FCProtocolEntry& fc, FecState& state) {
  if (const StatusCode status = ReadSetting(fc, state); status != kSuccess) return status;
  if (const StatusCode status = ReadIsMezzAdapter(kClassName, fc, state.is_mezz); status != kSuccess) {
    return status;
  }
  CorrectSetting(fc, state);
  return ReadStats(fc, state);
}

StatusCode ReadForSet(const FCProtocolEntry& fc, FecState& state) {
  if (const StatusCode status = ReadSetting(fc, state); status != kSuccess) return status;
  if (const StatusCode status = ReadStats(fc, state); status != kSuccess) return status;
  if (const StatusCode status = ReadIsMezzAdapter(kClassName, fc, state.is_mezz); status != kSuccess) {
    return status;
  }
  CorrectSetting(fc, state);
  return kSuccess;
}

StatusCode SetStatus(const FCProtocolEntry& fc, const std::string& value, FecState& state) {
  if (!MayChange(fc, state)) return kReadOnlyParameter;
  bool on = false;
  if (!ReadTrueFalse(value, on)) return kInvalidParameter;
  state.setting = on ? kOn : kOff;
  return CallLibrary(kClassName, "Set FEC info", kUpdateFailed,
                     [&] { return TORPI_FCSetFECSupportInfo(&fc.handle, state.setting); });
}

StatusCode ResetCounters(const FCProtocolEntry& fc, const std::string& value) {
  if (!EqualNoCase(value, "reset")) return kInvalidParameter;
  return CallLibrary(kClassName, "Reset FEC counters", kUpdateFailed,
                     [&] { return TORPI_ResetFECCounters(&fc.handle); });
}

// Does what the options ask for, one after the other: a failure of the second leaves the first one done.
StatusCode TakeOptions(const Words& words, const FCProtocolEntry& fc, FecState& state, bool& changed) {
  std::string value;
  if (FindOption(words, "--fec-status", "-f", value)) {
    if (const StatusCode status = SetStatus(fc, value, state); status != kSuccess) return status;
    changed = true;
  }
  if (FindOption(words, "--reset", "-r", value)) {
    if (const StatusCode status = ResetCounters(fc, value); status != kSuccess) return status;
    changed = true;
  }
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = OpenPort(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  FecState state;
  if (const StatusCode status = ReadForGet(*selected.fc, state); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayFECInfo(out, state, mode);
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode, kNoRebootNeeded); };

  PortSelection selected;
  if (const StatusCode status = OpenPort(words, selected); status != kSuccess) return fail(status);
  FecState state;
  if (const StatusCode status = ReadForSet(*selected.fc, state); status != kSuccess) return fail(status);
  bool changed = false;
  if (const StatusCode status = TakeOptions(words, *selected.fc, state, changed); status != kSuccess) {
    return fail(status);
  }
  // The counters are deliberately those from before a reset.
  return DisplayFECInfo(out, state, mode, {RebootField::kBehindMessage, changed});
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;

constexpr const char* kGetDescription = "get Sorvex adapter's FEC information";
constexpr const char* kSetDescription = "set Sorvex adapter's FEC information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"set", 1, kSetDescription, CmdSet},
    {"help", 2, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 3, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setcli", 4, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: get\r\n"},
    {4, "Usage: set\r\n"},
};

constexpr NodeClass kClass = {kClassName, "FEC", kLeaves, kUsage};

}  // namespace

PhysicalPortFECCmdsProcessor::PhysicalPortFECCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
