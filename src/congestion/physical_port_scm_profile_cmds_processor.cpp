#include "congestion/physical_port_scm_profile_cmds_processor.h"

#include <string>

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "framework/code_text.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 1024;

// Intended: another order than elsewhere, and a profile can be read and set while the feature is off.
constexpr GuardCheck kGuard[] = {GuardCheck::kFamily, GuardCheck::kPhysicalPort,
                                 GuardCheck::kSecondGeneration};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, NVRAM read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kExclusiveOptions,
    kMemoryError,
    {kReadOnlyParameter, "Failed, Read-Only parameter"},
    kVirtualPort,
    kMaintenanceMode,
};

constexpr const char* kDriverSettings = "Driver_Settings";

constexpr CodeText kProfiles[] = {
    {0, "Monitor_Only"}, {1, "Conservative"}, {2, "Moderate"}, {3, "Aggressive"}, {4, "Defensive"},
};

StatusCode DisplaySCMProfile(CommandRun& run, const FCProtocolEntry& fc, const SCMRProfile& profile) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  const bool is_own = profile.management != ProfileManagement::kDriverSettings;
  PortLines(text, fc);
  FlagLine(text, "VCLM Configuration Status", profile.configuration_status == 0);
  TextLine(text, "VCLM Profile Management", is_own ? "NVRAM" : kDriverSettings);
  TextLine(text, "VCLM Profile Activation", TextOfCode(kProfiles, profile.activation));
  return run.DisplayReport(text);
}

StatusCode ReadProfile(const CommandRun& run, const FCProtocolEntry& fc, SCMRProfile& profile) {
  return CallLibrary(run, "Get SCM profile", kReadFailed,
                     [&] { return TORPI_GetSCMRProfile(&fc.handle, &profile); });
}

StatusCode WriteProfile(const CommandRun& run, const FCProtocolEntry& fc, const SCMRProfile& profile) {
  return CallLibrary(run, "Set SCM profile", kUpdateFailed,
                     [&] { return TORPI_SetSCMRProfile(&fc.handle, &profile); });
}

// The two options, each with what its value does to the profile: false for a value that it does not know.

bool Restore(const std::string& value, SCMRProfile& profile) {
  if (!EqualNoCase(value, kDriverSettings)) return false;
  profile.management = ProfileManagement::kDriverSettings;
  return true;
}

bool Activate(const std::string& value, SCMRProfile& profile) {
  for (const CodeText& row : kProfiles) {
    if (!EqualNoCase(value, row.text)) continue;
    profile.management = ProfileManagement::kNvram;
    profile.activation = static_cast<std::uint8_t>(row.code);
    return true;
  }
  return false;
}

struct ProfileOption {
  InlineText<12> long_name;
  InlineText<2> short_name;
  bool (*take)(const std::string& value, SCMRProfile& profile);
};

constexpr ProfileOption kOptions[] = {
    {"--restore", "-r", &Restore},
    {"--activation", "-a", &Activate},
};

// Without any option the profile stays as it was read. An invalid value goes before the refusal of both
// options together.
StatusCode TakeOptions(const CommandRun& run, SCMRProfile& profile) {
  std::size_t found = 0;
  for (const ProfileOption& option : kOptions) {
    std::string value;
    if (!FindOption(run.words, option.long_name, option.short_name, value)) continue;
    if (!option.take(value, profile)) {
      return run.Refuse(kInvalidParameter, "Invalid value %s of %s", value.c_str(),
                        option.long_name.CString());
    }
    ++found;
  }
  if (found < std::size(kOptions)) return kSuccess;
  return run.Refuse(kExclusiveOptions, "Restore and Activation options are mutually exclusive");
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectGuardedPort(run, kGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  SCMRProfile profile = {};
  if (const StatusCode status = ReadProfile(run, *selected.fc, profile); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplaySCMProfile(run, *selected.fc, profile);
}

// Takes the options into the port's profile, writes it and reads it back: what is shown is what the port has
// now, not the request.
StatusCode ChangeProfile(const CommandRun& run, const FCProtocolEntry& fc, SCMRProfile& profile) {
  StatusCode status = ReadProfile(run, fc, profile);
  if (status == kSuccess) status = TakeOptions(run, profile);
  if (status == kSuccess) status = WriteProfile(run, fc, profile);
  if (status == kSuccess) status = ReadProfile(run, fc, profile);
  return status;
}

StatusCode CmdSetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectGuardedPort(run, kGuard, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  SCMRProfile profile = {};
  if (const StatusCode status = ChangeProfile(run, *selected.fc, profile); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplaySCMProfile(run, *selected.fc, profile);
}

// The usage texts leave out the port identifier and the options.
constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Physical Port VCLM Profile information", "Usage: get\r\n", &CmdGetCommon},
    {"set", "set Sorvex Physical Port VCLM Profile information", "Usage: set\r\n", &CmdSetCommon},
};

}  // namespace

NodeClass PhysicalPortSCMProfileCmdsProcessor() {
  return {
      .name = "PhysicalPortSCMProfileCmdsProcessor",
      .help_words = "scmprofile",
      .commands = TableOf<kCommands>(),
      .frame = {"PortVCLMProfile", "Congestion Profile", "CongestionProfileList"},
      .messages = TableOf<kMessages>(),
  };
}
