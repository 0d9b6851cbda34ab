#include "adapter/adapter_cmds_processor.h"

#include "adapter/adapter_flash_info_cmds_processor.h"
#include "adapter/adapter_info_cmds_processor.h"
#include "adapter/adapter_personality_cmds_processor.h"
#include "adapter/adapter_update.h"
#include "discovery/adapter_lookup.h"
#include "discovery/host_walk.h"
#include "discovery/listing.h"
#include "framework/report.h"
#include "framework/table.h"

namespace {

StatusCode CmdListCommon(CommandRun& run) {
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(run, list); status != kSuccess) return status;
  IdentifierList identifiers(run, "AdapterList", "Adapters");
  for (const AdapterEntry& adapter : AdaptersOf(*list)) identifiers.Write(AdapterIdentifier(adapter));
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {"list", "Discover list of Sorvex adapters", "Usage: list\r\n", &CmdListCommon},
    // The usage text leaves out the image type, which the command needs too.
    {"update", "Update firmware on the Sorvex Adapter", "Usage: [identifier] [flashfile]\r\n",
     &CmdUpdateCommon},
};

constexpr SubNode kSubNodes[] = {
    {"info", "-s", "use this command to get Sorvex Adapter info", &MakeNode<AdapterInfoCmdsProcessor>},
    {"personality", "-s", "use this command to get/set Sorvex Adapter personality",
     &MakeNode<AdapterPersonalityCmdsProcessor>},
    {"flashinfo", "-s", "use this command to get Sorvex Adapter flash information",
     &MakeNode<AdapterFlashInfoCmdsProcessor>},
};

}  // namespace

NodeClass AdapterCmdsProcessor() {
  return {
      .name = "AdapterCmdsProcessor",
      .help_words = "Adapter",
      .commands = TableOf<kCommands>(),
      .sub_nodes = TableOf<kSubNodes>(),
      .help_description = "List of available commands",
  };
}
