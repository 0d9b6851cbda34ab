#include "adapter/adapter_personality_cmds_processor.h"

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "AdapterPersonalityCmdsProcessor";
constexpr const char* kStructure = "AdapterPersonality";

constexpr const char* kPersonalityTexts[] = {"FC", "CNA"};

const char* PersonalityText(std::uint8_t personality) {
  return personality < std::size(kPersonalityTexts) ? kPersonalityTexts[personality] : "Unknown";
}

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    {kReadFailed, "Failed, Personality read failed"},
    kHostNotFound,        {kUpdateFailed, "Failed, Personality change failed"},
    kAdapterNotFound,     kPersonalityNotAllowed,
    kFeatureNotSupported, kVirtualPort,
    kMaintenanceMode,
};

// Of `set`: a change always needs a reboot.
constexpr RebootField kRebootNeeded = {RebootField::kAheadOfMessage, true};

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode, RebootField reboot = {}) {
  const Document document(out, mode, kStructure, MessageFor(kMessages, code), reboot);
  out.WriteStringField("Personality", "Unknown");
  return code;
}

StatusCode DisplayAdapterPersonality(Serializer& out, std::uint8_t personality, OutputMode mode,
                                     RebootField reboot = {}) {
  const Document document(out, mode, kStructure, "Success", reboot);
  out.WriteStringField("Personality", PersonalityText(personality));
  return kSuccess;
}

// The library calls of this class deliberately stand outside the output bracket.

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (IsVirtualPort(fc)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for vport", kClassName, __func__);
    return DisplayError(out, kVirtualPort, mode);
  }
  std::uint8_t personality = IsAnyOf(fc.pci, kCedarDevice | kGinkgo) ? kCnaPersonality : kFcPersonality;
  if (IsDeviceGroupElm(fc.pci) && TORPI_GetPersonalityType(&fc.handle, &personality) != kLibrarySuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: failed to read personality", kClassName, __func__);
    return DisplayError(out, kReadFailed, mode);
  }
  return DisplayAdapterPersonality(out, personality, mode);
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode, kNoRebootNeeded); };

  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(words, selected); status != kSuccess)
    return fail(status);
  const FCProtocolEntry& fc = *selected.fc;
  if (!IsDeviceGroupElm(fc.pci)) {
    DebugLogLevel(kDebugFailure, "%s::%s: feature not supported for this adapter", kClassName, __func__);
    return fail(kFeatureNotSupported);
  }
  if (IsVirtualPort(fc)) return fail(kVirtualPort);
  // Only the low 8 bits of the answer count.
  if (static_cast<std::uint8_t>(TORPI_CheckOrindaPersonalityChangeOption(&fc.handle)) != 1) {
    DebugLogLevel(kDebugFailure, "%s::%s: personality change by user not supported", kClassName, __func__);
    return fail(kPersonalityNotAllowed);
  }
  if (words.size() < 2) return fail(kInvalidParameter);
  // Deliberately without an error for an unknown word: it asks for "FC".
  const std::uint8_t wanted = EqualNoCase(words[1], "CNA") ? kCnaPersonality : kFcPersonality;

  std::uint8_t current = kFcPersonality;
  if (TORPI_GetPersonalityType(&fc.handle, &current) != kLibrarySuccess) return fail(kReadFailed);
  if (current != wanted) {
    const LibraryStatus result = TORPI_ChangePersonalityType(&fc.handle, wanted);
    if (result != kLibrarySuccess) {
      DebugLogLevel(kDebugFailure, "%s::%s: failed to change personality", kClassName, __func__);
      return fail(FromLibrary(result, kUpdateFailed));
    }
  }
  // The reboot is deliberately reported even when nothing changed.
  return DisplayAdapterPersonality(out, wanted, mode, kRebootNeeded);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;

constexpr const char* kGetDescription = "Get Sorvex Adapter Personality";
constexpr const char* kSetDescription = "Set Sorvex Adapter Personality";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"set", 1, kSetDescription, CmdSet},
    {"help", 2, "List of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 3, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setcli", 4, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: get [adapter identifier]\r\n"},
    {4, "Usage: set [adapter identifier]\r\n"},  // deliberately without the personality, which it needs too
};

constexpr NodeClass kClass = {kClassName, "Adapter personality", kLeaves, kUsage};

}  // namespace

AdapterPersonalityCmdsProcessor::AdapterPersonalityCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
