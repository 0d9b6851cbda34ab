#include "target/fc_target_cmds_processor.h"

#include "congestion/fc_target_scm_chk_cmds_processor.h"
#include "congestion/fc_target_scm_stats_cmds_processor.h"
#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "discovery/listing.h"
#include "framework/report.h"
#include "framework/table.h"
#include "target/fc_target_info_cmds_processor.h"
#include "target/fc_target_stats_cmds_processor.h"
#include "target/fc_target_tlsd_cmds_processor.h"

namespace {

StatusCode CmdListCommon(CommandRun& run) {
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(run, list); status != kSuccess) return status;
  IdentifierList identifiers(run, "TargetList", "Targets");
  VisitFcEntries(*list, [&](const auto&, const auto&, const FCProtocolEntry& entry) {
    for (const TargetEntry& target : TargetsOf(entry)) identifiers.Write(TargetIdentifier(entry, target));
    return false;
  });
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {"list", "Discover list of Sorvex FC Targets", "Usage: list\r\n", &CmdListCommon},
};

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

}  // namespace

NodeClass FCTargetCmdsProcessor() {
  return {
      .name = "FCTargetCmdsProcessor",
      .help_words = "FC Target",
      .commands = TableOf<kCommands>(),
      .sub_nodes = TableOf<kSubNodes>(),
  };
}
