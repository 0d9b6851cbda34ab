#include "config/physical_port_bbcr_cmds_processor.h"

#include "config/bbcr.h"

namespace {

constexpr auto CmdGet = &InXml<StagedCmd<Bbcr, StagedCommand::kGet>>;
constexpr auto CmdSetFile = &InXml<StagedCmd<Bbcr, StagedCommand::kSetFile>>;
constexpr auto CmdSet = &InXml<StagedCmd<Bbcr, StagedCommand::kSet>>;
constexpr auto CmdGetCli = &InText<StagedCmd<Bbcr, StagedCommand::kGet>>;
constexpr auto CmdSetFileCli = &InText<StagedCmd<Bbcr, StagedCommand::kSetFile>>;
constexpr auto CmdSetCli = &InText<StagedCmd<Bbcr, StagedCommand::kSet>>;

constexpr const char* kGetDescription = "get Sorvex adapter's Buffer-to-Buffer Credit information";
constexpr const char* kSetFileDescription =
    "set Sorvex adapter's Buffer-to-Buffer Credit information in a local cache file";
constexpr const char* kSetDescription = "set Sorvex adapter's Buffer-to-Buffer Credit information";

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

constexpr NodeClass kClass = {"PhysicalPortBBCRCmdsProcessor", "BBCR", kLeaves, kUsage};

}  // namespace

PhysicalPortBBCRCmdsProcessor::PhysicalPortBBCRCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
