#include "target/fc_lun_info_cmds_processor.h"

#include <algorithm>
#include <string>

#include "discovery/port_lookup.h"
#include "framework/device_library/octet_text.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCLunInfoCmdsProcessor";

constexpr ReportFrame kFrame = {"LunInformation", "LunInfo", "LunInfoList"};
constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {kInvalidParameter, kHostNotFound, kAdapterNotFound, kMemoryError};

// The unique identifier as hexadecimal octets with colons; "NA" when there is none.
std::string UniqueIdText(const LunEntry& lun, bool is_nvme) {
  const std::size_t stated = is_nvme ? lun.nvme_unique_id_length : lun.fcp_unique_id_length;
  const std::size_t length = std::min(stated, sizeof lun.unique_id);
  const bool all_zero = std::all_of(std::begin(lun.unique_id), std::end(lun.unique_id),
                                    [](std::uint8_t byte) { return byte == 0; });
  if (length == 0 || all_zero) return "NA";
  return OctetText({lun.unique_id, length});
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayLunInfo(Serializer& out, const TargetEntry& target, const LunEntry& lun, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) {
    DebugLogLevel(kDebugFailure, "%s::%s: Output memory alloc failed", kClassName, __func__);
    return DisplayError(out, kMemoryError, mode);
  }
  const bool is_nvme = IsNvmeTarget(target);
  FirstTextLine(text, "Vendor ID", lun.vendor_id.View());
  TextLine(text, "Product ID", lun.product_id.View());
  TextLine(text, "Product Revision", is_nvme ? lun.nvme_revision.View() : lun.fcp_revision.View());
  NumberLine(text, is_nvme ? "Namespace ID" : "Lun Number", lun.number);
  const unsigned long long size = is_nvme ? lun.nvme_size_mb.Value() : lun.fcp_size_mb.Value();
  text.Line("      %s: %llu\n", is_nvme ? "Namespace Size In MB" : "Lun Size In MB", size);
  TextLine(text, "Lun Worldwide Unique ID", UniqueIdText(lun, is_nvme));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  LunSelection selected;
  if (const StatusCode status = GetLunFromLunString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayLunInfo(out, *selected.target, *selected.lun, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex FC LUN information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get [port identifier]\r\n"}};

constexpr NodeClass kClass = {kClassName, "FC Lun info", kLeaves, kUsage};

}  // namespace

FCLunInfoCmdsProcessor::FCLunInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
