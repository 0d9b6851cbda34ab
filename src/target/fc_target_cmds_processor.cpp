#include "target/fc_target_cmds_processor.h"

#include "congestion/fc_target_scm_chk_cmds_processor.h"
#include "congestion/fc_target_scm_stats_cmds_processor.h"
#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "discovery/listing.h"
#include "runtime/timing_scope.h"
#include "target/fc_target_info_cmds_processor.h"
#include "target/fc_target_stats_cmds_processor.h"
#include "target/fc_target_tlsd_cmds_processor.h"

namespace {

constexpr const char* kClassName = "FCTargetCmdsProcessor";

StatusCode CmdListCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(kClassName, words, list); status != kSuccess) return status;
  IdentifierList identifiers(out, mode, "TargetList", "Targets");
  VisitFcEntries(*list, [&](const auto&, const auto&, const FCProtocolEntry& entry) {
    for (const TargetEntry& target : TargetsOf(entry)) identifiers.Write(TargetIdentifier(entry, target));
    return false;
  });
  return kSuccess;
}

constexpr auto CmdList = &InXml<CmdListCommon>;
constexpr auto CmdListCli = &InText<CmdListCommon>;

constexpr const char* kListDescription = "Discover list of Sorvex FC Targets";

constexpr Leaf kLeaves[] = {
    {"list", 0, kListDescription, CmdList},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"listcli", 2, kListDescription, CmdListCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: list\r\n"}};

constexpr SubNode kSubNodes[] = {
    {"info", "-v", "use this command to get Sorvex FC Target info", &MakeNode<FCTargetInfoCmdsProcessor>},
    {"scmstats", "-v", "use this command to get Sorvex FC Target SCM Statistics",
     &MakeNode<FCTargetSCMStatsCmdsProcessor>},
    {"scmchk", "-v", "use this command to get Sorvex FC Target SCM Status",
     &MakeNode<FCTargetSCMChkCmdsProcessor>},
    {"tlsd", "-v", "use this command to get/set Sorvex FC Target's Maximum Link Speed",
     &MakeNode<FCTargetTLSDCmdsProcessor>},
    {"stats", "-v", "use this command to get Sorvex FC Target Link Statistics",
     &MakeNode<FCTargetStatsCmdsProcessor>},
};

constexpr NodeClass kClass = {kClassName, "FC Target", kLeaves, kUsage, kSubNodes};

}  // namespace

FCTargetCmdsProcessor::FCTargetCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
