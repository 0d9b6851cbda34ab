#include "config/physical_port_hba_params_cmds_processor.h"

#include "config/hba_params.h"
#include "discovery/port_lookup.h"
#include "framework/library_call.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortHBAParamsCmdsProcessor";

// The documents of the commands that write no parameters.
constexpr const char* kRestoreStructure = "RestoreDefaultsInfo";
constexpr const char* kSaveStructure = "HBAParametersSave";

const char* MessageOf(StatusCode status) {
  return status == kSuccess ? CommonMessage(kSuccess) : MessageFor(kHbaParamsNode.messages, status);
}

StatusCode CmdRestoreDefaultsCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  StatusCode status = GetPhysicalPortFromPortString(kClassName, words, selected);
  if (status == kSuccess) {
    status = CallLibrary(kClassName, "Restore default NVRAM", kUpdateFailed,
                         [&] { return TORPI_RestoreDefaultNVRAM(&selected.fc->handle); });
  }
  const RebootField reboot = status == kSuccess
                                 ? RebootField{RebootField::kBehindMessage, IsRebootRequired(kClassName)}
                                 : kNoRebootNeeded;
  const Document document(out, mode, kRestoreStructure, MessageOf(status), reboot);
  return status;
}

StatusCode SaveToFile(const Words& words) {
  PortSelection selected;
  if (const StatusCode status = GetPhysicalPortFromPortString(kClassName, words, selected);
      status != kSuccess) {
    return status;
  }
  if (words.size() < 2) return kInvalidParameter;
  return CallLibrary(kClassName, "Save NVRAM to file", kReadFailed, [&] {
    return TORPI_SaveSingleAdapterNVRAMToFile(&selected.fc->handle, words[1].c_str());
  });
}

StatusCode CmdSaveCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const StatusCode status = SaveToFile(words);
  const Document document(out, mode, kSaveStructure, MessageOf(status));
  return status;
}

constexpr auto CmdGet = &InXml<StagedCmd<HbaParams, StagedCommand::kGet>>;
constexpr auto CmdSetFile = &InXml<StagedCmd<HbaParams, StagedCommand::kSetFile>>;
constexpr auto CmdSet = &InXml<StagedCmd<HbaParams, StagedCommand::kSet>>;
constexpr auto CmdRestoreDefaults = &InXml<CmdRestoreDefaultsCommon>;
constexpr auto CmdSave = &InXml<CmdSaveCommon>;
constexpr auto CmdGetCli = &InText<StagedCmd<HbaParams, StagedCommand::kGet>>;
constexpr auto CmdSetFileCli = &InText<StagedCmd<HbaParams, StagedCommand::kSetFile>>;
constexpr auto CmdSetCli = &InText<StagedCmd<HbaParams, StagedCommand::kSet>>;
constexpr auto CmdRestoreDefaultsCli = &InText<CmdRestoreDefaultsCommon>;
constexpr auto CmdSaveCli = &InText<CmdSaveCommon>;

constexpr const char* kGetDescription = "get Sorvex HBA Parameters information";
constexpr const char* kSetFileDescription = "set Sorvex HBA Parameters information in a local cache file";
constexpr const char* kSetDescription = "set Sorvex HBA Parameters information";
constexpr const char* kRestoreDescription = "Restore default values of Sorvex HBA Parameters";
constexpr const char* kSaveDescription = "save Sorvex HBA Parameters information in a text file";
constexpr const char* kSaveCliDescription = "Save Sorvex HBA Parameters information in a file";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"setFile", 1, kSetFileDescription, CmdSetFile},
    {"set", 2, kSetDescription, CmdSet},
    {"restoreDefaults", 3, kRestoreDescription, CmdRestoreDefaults},
    {"save", 4, kSaveDescription, CmdSave},
    {"help", 5, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 6, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setFilecli", 7, kSetFileDescription, CmdSetFileCli, &CommandNode::CmdUsage},
    {"setcli", 8, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
    {"restoreDefaultscli", 9, kRestoreDescription, CmdRestoreDefaultsCli, &CommandNode::CmdUsage},
    {"savecli", 10, kSaveCliDescription, CmdSaveCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {6, "Usage: get\r\n"},   {7, "Usage: setFile\r\n"},
    {8, "Usage: set\r\n"},   {9, "Usage: restoreDefaults\r\n"},
    {10, "Usage: save\r\n"},
};

constexpr NodeClass kClass = {kClassName, "hbaparams", kLeaves, kUsage};

}  // namespace

PhysicalPortHBAParamsCmdsProcessor::PhysicalPortHBAParamsCmdsProcessor(CmdProcessor* parent,
                                                                       const SubNode& self)
    : CommandNode(parent, self, kClass) {}
