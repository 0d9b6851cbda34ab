#include "adapter/adapter_cmds_processor.h"

#include "adapter/adapter_flash_info_cmds_processor.h"
#include "adapter/adapter_info_cmds_processor.h"
#include "adapter/adapter_personality_cmds_processor.h"
#include "adapter/adapter_update.h"
#include "discovery/adapter_lookup.h"
#include "discovery/host_walk.h"
#include "discovery/listing.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "AdapterCmdsProcessor";

StatusCode CmdListCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(kClassName, words, list); status != kSuccess) return status;
  IdentifierList identifiers(out, mode, "AdapterList", "Adapters");
  for (const AdapterEntry& adapter : AdaptersOf(*list)) identifiers.Write(AdapterIdentifier(adapter));
  return kSuccess;
}

constexpr auto CmdList = &InXml<CmdListCommon>;
constexpr auto CmdListCli = &InText<CmdListCommon>;
constexpr auto CmdUpdate = &InXml<CmdUpdateCommon>;
constexpr auto CmdUpdateCli = &InText<CmdUpdateCommon>;

constexpr const char* kListDescription = "Discover list of Sorvex adapters";
constexpr const char* kUpdateDescription = "Update firmware on the Sorvex Adapter";

constexpr Leaf kLeaves[] = {
    {"list", 0, kListDescription, CmdList},
    {"update", 1, kUpdateDescription, CmdUpdate},
    {"help", 2, "List of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"listcli", 3, kListDescription, CmdListCli, &CommandNode::CmdUsage},
    {"updatecli", 4, kUpdateDescription, CmdUpdateCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: list\r\n"},
    {4, "Usage: [identifier] [flashfile]\r\n"},  // deliberately without the image type, which it needs too
};

constexpr SubNode kSubNodes[] = {
    {"info", "-s", "use this command to get Sorvex Adapter info", &MakeNode<AdapterInfoCmdsProcessor>},
    {"personality", "-s", "use this command to get/set Sorvex Adapter personality",
     &MakeNode<AdapterPersonalityCmdsProcessor>},
    {"flashinfo", "-s", "use this command to get Sorvex Adapter flash information",
     &MakeNode<AdapterFlashInfoCmdsProcessor>},
};

constexpr NodeClass kClass = {kClassName, "Adapter", kLeaves, kUsage, kSubNodes};

}  // namespace

AdapterCmdsProcessor::AdapterCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
