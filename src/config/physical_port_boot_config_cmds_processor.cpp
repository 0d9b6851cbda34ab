#include "config/physical_port_boot_config_cmds_processor.h"

#include "config/boot_config.h"

namespace {

constexpr auto CmdGet = &InXml<StagedCmd<BootConfig, StagedCommand::kGet>>;
constexpr auto CmdSetFile = &InXml<StagedCmd<BootConfig, StagedCommand::kSetFile>>;
constexpr auto CmdSet = &InXml<StagedCmd<BootConfig, StagedCommand::kSet>>;
constexpr auto CmdGetCli = &InText<StagedCmd<BootConfig, StagedCommand::kGet>>;
constexpr auto CmdSetFileCli = &InText<StagedCmd<BootConfig, StagedCommand::kSetFile>>;
constexpr auto CmdSetCli = &InText<StagedCmd<BootConfig, StagedCommand::kSet>>;

constexpr const char* kGetDescription = "get Sorvex HBA Boot Config information";
constexpr const char* kSetFileDescription = "set Sorvex HBA Boot Config information in a local cache file";
constexpr const char* kSetDescription = "set Sorvex HBA Boot Config information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"setFile", 1, kSetFileDescription, CmdSetFile},
    {"set", 2, kSetDescription, CmdSet},
    {"help", 3, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 4, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setFilecli", 5, kSetFileDescription, CmdSetFileCli, &CommandNode::CmdUsage},
    {"setcli", 6, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {4, "Usage: get\r\n"},
    {5, "Usage: setFile\r\n"},
    {6, "Usage: set\r\n"},
};

constexpr NodeClass kClass = {"PhysicalPortBootConfigCmdsProcessor", "Boot Config", kLeaves, kUsage};

}  // namespace

PhysicalPortBootConfigCmdsProcessor::PhysicalPortBootConfigCmdsProcessor(CmdProcessor* parent,
                                                                         const SubNode& self)
    : CommandNode(parent, self, kClass) {}
