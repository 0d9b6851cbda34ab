#include "port/physical_port_vpd_cmds_processor.h"

#include <algorithm>

#include "discovery/port_lookup.h"
#include "framework/heap_buffer.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"
#include "port/vpd_map.h"

namespace {

constexpr ReportFrame kFrame = {"VPDInformation", "VPD Data", "TagList"};
constexpr std::uint32_t kVpdBytes = 1024;

constexpr StatusMessage kMessages[] = {
    {kWrongWordCount, "Failed, PF-Number not provided"},
    kInvalidParameter,
    kHostNotFound,
    kFileNotFound,
    kAdapterNotFound,
    kFeatureNotSupported,
    kVpdFailed,
    kMaintenanceMode,
};

struct Keyword {
  InlineText<2> keyword;
  InlineText<21> name;
};

constexpr Keyword kKeywords[] = {
    {"PI", "Product Identifier"}, {"PN", "Part Number"},           {"SN", "Serial Number"},
    {"MN", "Manufacturing Id"},   {"EC", "Engineering Date Code"}, {"RM", "Multi Boot Version"},
    {"V0", "Miscellaneous Info"}, {"V1", "Efi Driver Version"},    {"V3", "Firmware Version"},
    {"V4", "Bios Version"},       {"V5", "FCode Version"},         {"V9", "Multi Boot Version"},
};

// The long name of a keyword; null for one that is not shown.
const char* NameOf(std::string_view keyword) {
  for (const Keyword& row : kKeywords) {
    if (row.keyword == keyword) return row.name;
  }
  return nullptr;
}

StatusCode DisplayVPDInfo(CommandRun& run, std::span<const std::uint8_t> image) {
  const FunctionScope function(run, __func__);
  const Document document(run, kFrame.structure, "Success");
  const ListField list(run.out, kFrame.field);
  for (const auto& [keyword, value] : MapVpdData(run, image)) {
    const char* const name = NameOf(keyword);
    if (name == nullptr) continue;
    const ListStructure element(run.out, kFrame.list_structure);
    run.out.WriteStringField("Tag", name);
    run.out.WriteStringField("Value", value.c_str());
  }
  return kSuccess;
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const auto image = ZeroedBytes(kVpdBytes);
  if (image == nullptr) return run.DisplayError(run.Refuse(kMemoryError, "pVpd malloc failed"));
  std::uint32_t size = kVpdBytes;
  const StatusCode status = CallLibrary(run, "Get VPD Data", kVpdFailed, [&] {
    return TORPI_GetVpd(&selected.fc->handle, 0, image.get(), &size);
  });
  if (status != kSuccess) return run.DisplayError(status);
  return DisplayVPDInfo(run, {image.get(), std::min(size, kVpdBytes)});
}

// The usage text leaves out the port identifier, which the command needs.
constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex VPD information", "Usage: get\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass PhysicalPortVPDCmdsProcessor() {
  return {
      .name = "PhysicalPortVPDCmdsProcessor",
      .help_words = "Port vpd",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
  };
}
