#include "congestion/physical_port_scm_profile_cmds_processor.h"

#include <string>

#include "congestion/congestion_lines.h"
#include "congestion/guard.h"
#include "framework/code_text.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortSCMProfileCmdsProcessor";

constexpr ReportFrame kFrame = {"PortVCLMProfile", "Congestion Profile", "CongestionProfileList"};
constexpr std::size_t kReportBytes = 1024;

// Deliberately another order than elsewhere, and a profile can be read and set while the feature is off.
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

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplaySCMProfile(Serializer& out, const FCProtocolEntry& fc, const SCMRProfile& profile,
                             OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  const bool is_own = profile.management != ProfileManagement::kDriverSettings;
  PortLines(text, fc);
  FlagLine(text, "VCLM Configuration Status", profile.configuration_status == 0);
  TextLine(text, "VCLM Profile Management", is_own ? "NVRAM" : kDriverSettings);
  TextLine(text, "VCLM Profile Activation", TextOfCode(kProfiles, profile.activation));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode ReadProfile(const FCProtocolEntry& fc, SCMRProfile& profile) {
  return CallLibrary(kClassName, "Get SCM profile", kReadFailed,
                     [&] { return TORPI_GetSCMRProfile(&fc.handle, &profile); });
}

StatusCode WriteProfile(const FCProtocolEntry& fc, const SCMRProfile& profile) {
  return CallLibrary(kClassName, "Set SCM profile", kUpdateFailed,
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
  const char* long_name;
  const char* short_name;
  bool (*take)(const std::string& value, SCMRProfile& profile);
};

constexpr ProfileOption kOptions[] = {
    {"--restore", "-r", &Restore},
    {"--activation", "-a", &Activate},
};

// Without any option the profile stays as it was read. Whether both stand there is looked at last.
StatusCode TakeOptions(const Words& words, SCMRProfile& profile) {
  std::size_t found = 0;
  for (const ProfileOption& option : kOptions) {
    Words copy = words;
    std::string value;
    if (!GetOptionValue(copy, option.long_name, option.short_name, value)) continue;
    if (!option.take(value, profile)) {
      DebugLogLevel(kDebugFailure, "%s::%s: Invalid value %s of %s", kClassName, __func__, value.c_str(),
                    option.long_name);
      return kInvalidParameter;
    }
    ++found;
  }
  return found == std::size(kOptions) ? kExclusiveOptions : kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = OpenPort(kClassName, words, kGuard, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  SCMRProfile profile = {};
  if (const StatusCode status = ReadProfile(*selected.fc, profile); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplaySCMProfile(out, *selected.fc, profile, mode);
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode); };

  PortSelection selected;
  if (const StatusCode status = OpenPort(kClassName, words, kGuard, selected); status != kSuccess) {
    return fail(status);
  }
  const FCProtocolEntry& fc = *selected.fc;
  SCMRProfile profile = {};
  if (const StatusCode status = ReadProfile(fc, profile); status != kSuccess) return fail(status);
  if (const StatusCode status = TakeOptions(words, profile); status != kSuccess) return fail(status);
  if (const StatusCode status = WriteProfile(fc, profile); status != kSuccess) return fail(status);
  // What is shown is what the port has now, not the request.
  if (const StatusCode status = ReadProfile(fc, profile); status != kSuccess) return fail(status);
  return DisplaySCMProfile(out, fc, profile, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;

constexpr const char* kGetDescription = "get Sorvex Physical Port VCLM Profile information";
constexpr const char* kSetDescription = "set Sorvex Physical Port VCLM Profile information";

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

constexpr NodeClass kClass = {kClassName, "scmprofile", kLeaves, kUsage};

}  // namespace

PhysicalPortSCMProfileCmdsProcessor::PhysicalPortSCMProfileCmdsProcessor(CmdProcessor* parent,
                                                                         const SubNode& self)
    : CommandNode(parent, self, kClass) {}
