#include "target/fc_lun_info_cmds_processor.h"

#include <algorithm>
#include <string>

#include "discovery/port_lookup.h"
#include "framework/device_library/octet_text.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

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

StatusCode DisplayLunInfo(CommandRun& run, const TargetEntry& target, const LunEntry& lun) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  const bool is_nvme = IsNvmeTarget(target);
  FirstTextLine(text, "Vendor ID", lun.vendor_id.View());
  TextLine(text, "Product ID", lun.product_id.View());
  TextLine(text, "Product Revision", is_nvme ? lun.nvme_revision.View() : lun.fcp_revision.View());
  NumberLine(text, is_nvme ? "Namespace ID" : "Lun Number", lun.number);
  const unsigned long long size = is_nvme ? lun.nvme_size_mb.Value() : lun.fcp_size_mb.Value();
  text.Line("      %s: %llu\n", is_nvme ? "Namespace Size In MB" : "Lun Size In MB", size);
  TextLine(text, "Lun Worldwide Unique ID", UniqueIdText(lun, is_nvme));
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  LunSelection selected;
  if (const StatusCode status = SelectLun(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayLunInfo(run, *selected.target, *selected.lun);
}

constexpr CommandRow kCommands[] = {
    // The usage text says "port": the identifier is a LUN's.
    {"get", "get Sorvex FC LUN information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass FCLunInfoCmdsProcessor() {
  return {
      .name = "FCLunInfoCmdsProcessor",
      .help_words = "FC Lun info",
      .commands = TableOf<kCommands>(),
      .frame = {"LunInformation", "LunInfo", "LunInfoList"},
      .messages = TableOf<kMessages>(),
  };
}
