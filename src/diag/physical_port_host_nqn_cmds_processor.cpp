#include "diag/physical_port_host_nqn_cmds_processor.h"

#include <string>

#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

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

// Answers of the library that have a status of their own in all commands of this class.
constexpr LibraryAnswer kAnswers[] = {{kLibraryNqnRegistered, kNqnAlreadyRegistered},
                                      {kLibraryNqnNotRegistered, kNqnNotRegistered}};

// As the library takes it.
enum Action : std::uint8_t { kDeregister = 0, kRegister = 1 };

StatusCode DisplayHostNQNInfo(CommandRun& run, const FCProtocolEntry& fc, bool registered) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, "Success");
  const ListField list(run.out, kFrame.field);
  const ListStructure element(run.out, kFrame.list_structure);
  run.out.WriteStringField("Host Nqn", fc.host_nqn.Empty() ? "NA" : std::string(fc.host_nqn.View()).c_str());
  run.out.WriteStringField("Host Nqn Registration Status", registered ? "Registered" : "Not Registered");
  return kSuccess;
}

// The checks that all commands begin with.
StatusCode SelectNvmePort(CommandRun& run, const FCProtocolEntry*& fc) {
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return status;
  fc = selected.fc;
  if (!IsAnyOf(fc->pci, kHazel | kIris | kDahlia)) {
    return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
  }
  return CheckLinkUp(run, *fc);
}

StatusCode CmdGetCommon(CommandRun& run) {
  const FCProtocolEntry* fc = nullptr;
  std::uint8_t registered = 0;
  StatusCode status = SelectNvmePort(run, fc);
  if (status == kSuccess) {
    status = CallLibrary(run, "Get host NQN status", kAnswers, kReadFailed,
                         [&] { return TORPI_GetNVMeHostNQNStatus(&fc->handle, &registered); });
  }
  if (status != kSuccess) return run.DisplayError(status);
  return DisplayHostNQNInfo(run, *fc, registered != 0);
}

// The status that is shown follows from the action; it is not read back.
StatusCode ChangeRegistration(CommandRun& run, const char* step, Action action) {
  const FCProtocolEntry* fc = nullptr;
  StatusCode status = SelectNvmePort(run, fc);
  if (status == kSuccess) {
    status = CallLibrary(run, step, kAnswers, kUpdateFailed,
                         [&] { return TORPI_RegisterDeregisterNVMeHostNQN(&fc->handle, action); });
  }
  if (status != kSuccess) return run.DisplayError(status);
  return DisplayHostNQNInfo(run, *fc, action == kRegister);
}

StatusCode CmdRegisterCommon(CommandRun& run) {
  return ChangeRegistration(run, "Register host NQN", kRegister);
}

StatusCode CmdDeregisterCommon(CommandRun& run) {
  return ChangeRegistration(run, "Deregister host NQN", kDeregister);
}

constexpr CommandRow kCommands[] = {
    {"get", "get NVMe Host NQN information", "Usage: get\r\n", &CmdGetCommon},
    {"register", "register NVMe Host NQN information", "Usage: register\r\n", &CmdRegisterCommon},
    {"deregister", "deregister NVMe Host NQN information", "Usage: deregister\r\n", &CmdDeregisterCommon},
};

}  // namespace

NodeClass PhysicalPortHostNQNCmdsProcessor() {
  return {
      .name = "PhysicalPortHostNQNCmdsProcessor",
      .help_words = "Host NQN",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
