#include "target/fc_lun_cmds_processor.h"

#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "discovery/listing.h"
#include "runtime/timing_scope.h"
#include "target/fc_lun_info_cmds_processor.h"

namespace {

constexpr const char* kClassName = "FCLunCmdsProcessor";

StatusCode CmdListCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(kClassName, words, list); status != kSuccess) return status;
  IdentifierList identifiers(out, mode, "LunList", "LUNs/Namespaces");
  VisitFcEntries(*list, [&](const auto&, const auto&, const FCProtocolEntry& entry) {
    for (const TargetEntry& target : TargetsOf(entry)) {
      LunIdentifiers names(entry, target);
      for (const LunEntry& lun : LunsOf(target)) identifiers.Write(names.Of(lun));
    }
    return false;
  });
  return kSuccess;
}

constexpr auto CmdList = &InXml<CmdListCommon>;
constexpr auto CmdListCli = &InText<CmdListCommon>;

constexpr const char* kListDescription = "Discover list of Sorvex FC LUNs";

constexpr Leaf kLeaves[] = {
    {"list", 0, kListDescription, CmdList},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"listcli", 2, kListDescription, CmdListCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: list\r\n"}};

constexpr SubNode kSubNodes[] = {
    {"info", "-v", "use this command to get Sorvex FC LUN info", &MakeNode<FCLunInfoCmdsProcessor>},
};

constexpr NodeClass kClass = {kClassName, "FC Lun", kLeaves, kUsage, kSubNodes};

}  // namespace

FCLunCmdsProcessor::FCLunCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
