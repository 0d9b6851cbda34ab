#include "port/physical_port_vpd_cmds_processor.h"

#include <algorithm>

#include "discovery/port_lookup.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "port/vpd_map.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortVPDCmdsProcessor";

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
  std::string_view keyword;
  const char* name;
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

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayVPDInfo(Serializer& out, std::span<const std::uint8_t> image, OutputMode mode) {
  const Document document(out, mode, kFrame.structure, "Success");
  const ListField list(out, kFrame.field);
  for (const auto& [keyword, value] : MapVpdData(image)) {
    const char* const name = NameOf(keyword);
    if (name == nullptr) continue;
    const ListStructure element(out, kFrame.list_structure);
    out.WriteStringField("Tag", name);
    out.WriteStringField("Value", value.c_str());
  }
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  std::uint8_t image[kVpdBytes] = {};
  std::uint32_t size = kVpdBytes;
  const StatusCode status = CallLibrary(kClassName, "Get VPD Data", kVpdFailed,
                                        [&] { return TORPI_GetVpd(&selected.fc->handle, 0, image, &size); });
  if (status != kSuccess) return DisplayError(out, status, mode);
  return DisplayVPDInfo(out, {image, std::min(size, kVpdBytes)}, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex VPD information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get\r\n"}};  // deliberately without the port identifier

constexpr NodeClass kClass = {kClassName, "Port vpd", kLeaves, kUsage};

}  // namespace

PhysicalPortVPDCmdsProcessor::PhysicalPortVPDCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
