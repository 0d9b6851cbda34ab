#include "config/physical_port_beacon_cmds_processor.h"

#include "discovery/mezzanine.h"
#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortBeaconCmdsProcessor";
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

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, kStructure, MessageFor(kMessages, code));
  out.WriteStringField(kStateField, "Unknown");
  return code;
}

StatusCode DisplayBeaconInfo(Serializer& out, std::uint32_t state, OutputMode mode) {
  const Document document(out, mode, kStructure, "Success");
  out.WriteStringField(kStateField, TextOfCode(kStates, state));
  return kSuccess;
}

StatusCode CheckAdapter(const FCProtocolEntry& fc) {
  bool is_mezz = false;
  if (const StatusCode status = ReadIsMezzAdapter(kClassName, fc, is_mezz); status != kSuccess) return status;
  const bool has_beacon = IsAnyOf(fc.pci, kAster | kBirch | kElmOnly | kHazel | kIris | kDahlia);
  if (!is_mezz && has_beacon) return kSuccess;
  DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
  return kFeatureNotSupported;
}

StatusCode ReadState(const FCProtocolEntry& fc, std::uint32_t& state) {
  return CallLibrary(kClassName, "Get beacon status", kReadFailed,
                     [&] { return TORPI_GetAdapterBeaconStatus(&fc.handle, &state); });
}

StatusCode WriteState(const FCProtocolEntry& fc, std::uint32_t state) {
  return CallLibrary(kClassName, "Update beacon status", kUpdateFailed,
                     [&] { return TORPI_UpdateAdapterBeaconStatus(&fc.handle, state); });
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode); };

  PortSelection selected;
  if (const StatusCode status = GetPhysicalPortFromPortString(kClassName, words, selected);
      status != kSuccess) {
    return fail(status);
  }
  if (const StatusCode status = CheckAdapter(*selected.fc); status != kSuccess) return fail(status);
  std::uint32_t state = 0;
  if (const StatusCode status = ReadState(*selected.fc, state); status != kSuccess) return fail(status);
  return DisplayBeaconInfo(out, state, mode);
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode); };

  PortSelection selected;
  if (const StatusCode status = GetPhysicalPortFromPortString(kClassName, words, selected);
      status != kSuccess) {
    return fail(status);
  }
  if (words.size() < 2) return fail(kInvalidParameter);  // without asking the library for anything
  if (const StatusCode status = CheckAdapter(*selected.fc); status != kSuccess) return fail(status);
  for (const CodeText& wanted : kStates) {
    if (!EqualNoCase(words[1], wanted.text)) continue;
    if (const StatusCode status = WriteState(*selected.fc, wanted.code); status != kSuccess) {
      return fail(status);
    }
    // What is shown is the device's state, not the request.
    std::uint32_t state = 0;
    if (const StatusCode status = ReadState(*selected.fc, state); status != kSuccess) return fail(status);
    return DisplayBeaconInfo(out, state, mode);
  }
  return fail(kInvalidParameter);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;

constexpr const char* kGetDescription = "get Sorvex adapter's Beacon information";
constexpr const char* kSetDescription = "set Sorvex adapter's Beacon information";

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

constexpr NodeClass kClass = {kClassName, "Beacon", kLeaves, kUsage};

}  // namespace

PhysicalPortBeaconCmdsProcessor::PhysicalPortBeaconCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
