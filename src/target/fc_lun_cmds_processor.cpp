#include "target/fc_lun_cmds_processor.h"

#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "discovery/listing.h"
#include "framework/report.h"
#include "framework/table.h"
#include "target/fc_lun_info_cmds_processor.h"

namespace {

StatusCode CmdListCommon(CommandRun& run) {
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(run, list); status != kSuccess) return status;
  IdentifierList identifiers(run, "LunList", "LUNs/Namespaces");
  VisitFcEntries(*list, [&](const auto&, const auto&, const FCProtocolEntry& entry) {
    for (const TargetEntry& target : TargetsOf(entry)) {
      LunIdentifiers names(entry, target);
      for (const LunEntry& lun : LunsOf(target)) identifiers.Write(names.Of(lun));
    }
    return false;
  });
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {"list", "Discover list of Sorvex FC LUNs", "Usage: list\r\n", &CmdListCommon},
};

constexpr SubNode kSubNodes[] = {
    {"info", "-v", "use this command to get Sorvex FC LUN info", &MakeNode<FCLunInfoCmdsProcessor>},
};

}  // namespace

NodeClass FCLunCmdsProcessor() {
  return {
      .name = "FCLunCmdsProcessor",
      .help_words = "FC Lun",
      .commands = TableOf<kCommands>(),
      .sub_nodes = TableOf<kSubNodes>(),
  };
}
