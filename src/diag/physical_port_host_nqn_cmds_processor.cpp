#include "diag/physical_port_host_nqn_cmds_processor.h"

#include <string>

#include "diag/test_port.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortHostNQNCmdsProcessor";

constexpr ReportFrame kFrame = {"HostNQNInformation", "HostNQNInfo", "HostNQNInfoList"};

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, Host NQN settings read failed."},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, Host NQN settings update failed."},
    kAdapterNotFound,
    kFeatureNotSupported,
    kLinkDown,
    kVirtualPort,
    kMaintenanceMode,
    kNqnAlreadyRegistered,
    kNqnNotRegistered,
};

// Answers of the library that have a status of their own here, in all commands.
constexpr LibraryAnswer kAnswers[] = {{kLibraryNqnRegistered, kNqnAlreadyRegistered},
                                      {kLibraryNqnNotRegistered, kNqnNotRegistered}};

enum Action : std::uint8_t { kDeregister = 0, kRegister = 1 };

// The checks that all commands begin with.
StatusCode SelectPort(const Words& words, const FCProtocolEntry*& fc) {
  if (const StatusCode status = SelectTestPort(kClassName, words, fc); status != kSuccess) return status;
  if (!IsAnyOf(fc->pci, kHazel | kIris | kDahlia)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
    return kFeatureNotSupported;
  }
  return IsLinkUp(*fc) ? kSuccess : kLinkDown;
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayHostNQNInfo(Serializer& out, const FCProtocolEntry& fc, bool registered, OutputMode mode) {
  const Document document(out, mode, kFrame.structure, "Success");
  const ListField list(out, kFrame.field);
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Host Nqn", fc.host_nqn.Empty() ? "NA" : std::string(fc.host_nqn.View()).c_str());
  out.WriteStringField("Host Nqn Registration Status", registered ? "Registered" : "Not Registered");
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  std::uint8_t registered = 0;
  StatusCode status = SelectPort(words, fc);
  if (status == kSuccess) {
    status = CallLibrary(kClassName, "Get host NQN status", kAnswers, kReadFailed,
                         [&] { return TORPI_GetNVMeHostNQNStatus(&fc->handle, &registered); });
  }
  if (status != kSuccess) return DisplayError(out, status, mode);
  return DisplayHostNQNInfo(out, *fc, registered != 0, mode);
}

// What stands registered afterwards is taken from the action, without reading it back.
template <Action action>
StatusCode CmdChangeCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const FCProtocolEntry* fc = nullptr;
  StatusCode status = SelectPort(words, fc);
  if (status == kSuccess) {
    status = CallLibrary(kClassName, "Change host NQN registration", kAnswers, kUpdateFailed,
                         [&] { return TORPI_RegisterDeregisterNVMeHostNQN(&fc->handle, action); });
  }
  if (status != kSuccess) return DisplayError(out, status, mode);
  return DisplayHostNQNInfo(out, *fc, action == kRegister, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdRegister = &InXml<CmdChangeCommon<kRegister>>;
constexpr auto CmdDeregister = &InXml<CmdChangeCommon<kDeregister>>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdRegisterCli = &InText<CmdChangeCommon<kRegister>>;
constexpr auto CmdDeregisterCli = &InText<CmdChangeCommon<kDeregister>>;

constexpr const char* kGetDescription = "get NVMe Host NQN information";
constexpr const char* kRegisterDescription = "register NVMe Host NQN information";
constexpr const char* kDeregisterDescription = "deregister NVMe Host NQN information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"register", 1, kRegisterDescription, CmdRegister},
    {"deregister", 2, kDeregisterDescription, CmdDeregister},
    {"help", 3, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 4, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"registercli", 5, kRegisterDescription, CmdRegisterCli, &CommandNode::CmdUsage},
    {"deregistercli", 6, kDeregisterDescription, CmdDeregisterCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {4, "Usage: get\r\n"},
    {5, "Usage: register\r\n"},
    {6, "Usage: deregister\r\n"},
};

constexpr NodeClass kClass = {kClassName, "Host NQN", kLeaves, kUsage};

}  // namespace

PhysicalPortHostNQNCmdsProcessor::PhysicalPortHostNQNCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
