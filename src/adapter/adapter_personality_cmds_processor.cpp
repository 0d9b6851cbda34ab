#include "adapter/adapter_personality_cmds_processor.h"

#include "discovery/adapter_lookup.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/inline_text.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

constexpr const char* kStructure = "AdapterPersonality";

constexpr InlineText<3> kPersonalityTexts[] = {"FC", "CNA"};

const char* PersonalityText(std::uint8_t personality) {
  return personality < std::size(kPersonalityTexts) ? kPersonalityTexts[personality].CString() : "Unknown";
}

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    {kReadFailed, "Failed, Personality read failed"},
    kHostNotFound,        {kUpdateFailed, "Failed, Personality change failed"},
    kAdapterNotFound,     kPersonalityNotAllowed,
    kFeatureNotSupported, kVirtualPort,
    kMaintenanceMode,
};

// Of `set`: a change always needs a reboot.
constexpr RebootField kRebootNeeded = {RebootField::kBeforeMessage, true};

StatusCode DisplayError(CommandRun& run, StatusCode code, RebootField reboot = {}) {
  const FunctionScope function(run, __func__);
  const Document document(run, kStructure, run.MessageFor(code), reboot);
  run.out.WriteStringField("Personality", "Unknown");
  return code;
}

StatusCode DisplayAdapterPersonality(CommandRun& run, std::uint8_t personality, RebootField reboot = {}) {
  const FunctionScope function(run, __func__);
  const Document document(run, kStructure, "Success", reboot);
  run.out.WriteStringField("Personality", PersonalityText(personality));
  return kSuccess;
}

// This class makes its library calls outside the output bracket.

StatusCode CmdGetCommon(CommandRun& run) {
  AdapterSelection selected;
  if (const StatusCode status = SelectAdapter(run, selected); status != kSuccess) {
    return DisplayError(run, status);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (const StatusCode status = CheckPhysical(run, fc); status != kSuccess) return DisplayError(run, status);
  std::uint8_t personality = IsAnyOf(fc.pci, kCedarDevice | kGinkgo) ? kCnaPersonality : kFcPersonality;
  if (IsDeviceGroupElm(fc.pci) && TORPI_GetPersonalityType(&fc.handle, &personality) != kLibrarySuccess) {
    return DisplayError(run, run.Refuse(kReadFailed, "failed to read personality"));
  }
  return DisplayAdapterPersonality(run, personality);
}

StatusCode CmdSetCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplayError(run, code, kNoRebootNeeded); };

  AdapterSelection selected;
  if (const StatusCode status = SelectAdapter(run, selected); status != kSuccess) return fail(status);
  const FCProtocolEntry& fc = *selected.fc;
  if (!IsDeviceGroupElm(fc.pci)) {
    return fail(run.Refuse(kFeatureNotSupported, "feature not supported for this adapter"));
  }
  if (const StatusCode status = CheckPhysical(run, fc); status != kSuccess) return fail(status);
  // Only the low 8 bits of the answer count.
  if (static_cast<std::uint8_t>(TORPI_CheckOrindaPersonalityChangeOption(&fc.handle)) != 1) {
    return fail(run.Refuse(kPersonalityNotAllowed, "personality change by user not supported"));
  }
  if (run.words.size() < 2) return fail(run.Refuse(kInvalidParameter, "personality not given"));
  // An unknown word is no error: it asks for "FC".
  const std::uint8_t wanted = EqualNoCase(run.words[1], "CNA") ? kCnaPersonality : kFcPersonality;

  std::uint8_t current = kFcPersonality;
  if (TORPI_GetPersonalityType(&fc.handle, &current) != kLibrarySuccess) {
    return fail(run.Refuse(kReadFailed, "failed to read personality"));
  }
  if (current != wanted) {
    const LibraryStatus result = TORPI_ChangePersonalityType(&fc.handle, wanted);
    if (result != kLibrarySuccess) {
      return fail(run.Refuse(FromLibrary(result, kUpdateFailed), "failed to change personality"));
    }
  }
  // The document asks for a reboot even when nothing has changed.
  return DisplayAdapterPersonality(run, wanted, kRebootNeeded);
}

constexpr CommandRow kCommands[] = {
    {"get", "Get Sorvex Adapter Personality", "Usage: get [adapter identifier]\r\n", &CmdGetCommon},
    // The usage text leaves out the personality, which the command needs too.
    {"set", "Set Sorvex Adapter Personality", "Usage: set [adapter identifier]\r\n", &CmdSetCommon},
};

}  // namespace

NodeClass AdapterPersonalityCmdsProcessor() {
  return {
      .name = "AdapterPersonalityCmdsProcessor",
      .help_words = "Adapter personality",
      .commands = TableOf<kCommands>(),
      .messages = TableOf<kMessages>(),
      .help_description = "List of available commands",
  };
}
