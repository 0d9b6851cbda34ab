#include "target/fc_lun_cmds_processor.h"

#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "framework/device_library/calls.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"
#include "target/fc_lun_info_cmds_processor.h"

namespace {

constexpr const char* kClassName = "FCLunCmdsProcessor";

StatusCode CmdListCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  if (IsHelpWord(WordAt(words, 0))) return kHelpWord;
  const AdapterList* const list = TORPI_GetAdapterList();
  if (list == nullptr) {
    // The one failure without a document: the command deliberately ends in silence.
    DebugLogLevel(kDebugFailure, "%s::%s: List is NULL", kClassName, __func__);
    return kHostNotFound;
  }
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
