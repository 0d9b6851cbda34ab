#include "adapter/adapter_flash_info_cmds_processor.h"

#include <cstring>
#include <string>
#include <string_view>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/output_bracket.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "AdapterFlashInfoCmdsProcessor";

constexpr ReportFrame kFrame = {"AdapterFlashInformation", "Flash Info", "FlashInfoList"};
constexpr std::size_t kReportBytes = 1024;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    {kReadFailed, "Failed, Flash Info read failed"},
    kHostNotFound,        kFileNotFound,
    kAdapterNotFound,     kInvalidSignature,
    kFeatureNotSupported, kMemoryError,
};

struct FlashTool {
  std::string_view id;
  const char* name;
};

constexpr FlashTool kFlashTools[] = {
    {"ZCLI", "Meridot CLI"},
    {"ZGUI", "Meridot GUI"},
    {"ZMFG", "Manufacturing Tool"},
    {"ZNFS", "DOS Flash Update Utility"},
    {"PLDM", "Platform Management Firmware"},
    {"EFLS", "UEFI Flash Tool"},
    {"EFMP", "UEFI Firmware Management Protocol Driver"},
    {"VIPL", "ESXi Plugin"},
    {"HPFL", "Flash Update Library"},
    {"ZNFL", "ZNFL"},
    {"ECLI", "ESX CLI Plugin"},
    {"FCLK", "FC Lumakit"},
    {"CMPR", "CIM Provider"},
    {"IBMD", "IBM AIX Driver"},
};

const char* FlashToolName(std::string_view id) {
  for (const FlashTool& tool : kFlashTools) {
    if (EqualNoCase(id, tool.id)) return tool.name;
  }
  return "Unknown";
}

// One byte of the signature at its place is deliberately enough.
bool SignaturePasses(const FlashMemoBlock& memo) {
  return memo.signature[0] == 'F' || memo.signature[1] == 'M' || memo.signature[2] == 'B' ||
         memo.signature[3] == 'S';
}

// The build date up to its terminator if it has one, with terminators for what is missing.
std::string BuildDate(const FlashMemoBlock& memo) {
  std::string date(memo.mbi_build_date, strnlen(memo.mbi_build_date, sizeof memo.mbi_build_date));
  date.resize(sizeof memo.mbi_build_date);
  return date;
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayFlashInfo(Serializer& out, const FlashMemoBlock& memo, OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  const ComponentVersion& mbi = memo.mbi_version;
  text.Line("%s: %02hhu.%02hhu.%02hhu\n", "MBI Version", mbi.major, mbi.minor, mbi.sub);
  const std::string date = BuildDate(memo);
  text.Line("      %s: %.4s-%.2s-%.2s\n", "MBI Build Date", date.c_str(), &date[4], &date[6]);
  text.Line("      %s: %s\n", "Flash Tool ID", FlashToolName({memo.tool_id, sizeof memo.tool_id}));
  text.Line("      %s: %02hhu.%02hhu.%02hhu.%02hhu\n", "Flash Tool Version", memo.tool_version[0],
            memo.tool_version[1], memo.tool_version[2], memo.tool_version[3]);
  text.Line("      %s: %04hu-%02hhu-%02hhu %02hhu:%02hhu:%02hhu\n", "Last Update Time", memo.update_year,
            memo.update_month, memo.update_day, memo.update_hour, memo.update_minute, memo.update_second);
  const ComponentVersion& family = memo.family_firmware;
  if (!family.AllZero()) {
    text.Line("      %s: %02hhu.%02hhu.%02hhu\n", "Family Firmware Version", family.major, family.minor,
              family.sub);
  }
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (!HasFlashMemoBlock(fc.pci)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
    return DisplayError(out, kFeatureNotSupported, mode);
  }
  OutputBracket bracket(kClassName);
  if (!bracket.IsOpen()) return DisplayError(out, kFileNotFound, mode);
  FlashMemoBlock memo = {};
  const LibraryStatus result = TORPI_GetAdapterFlashMemoBlock(&fc.handle, &memo);
  bracket.Close();
  if (result != kLibrarySuccess) {
    // Deliberately the same status in maintenance mode.
    DebugLogLevel(kDebugFailure, "%s::%s: Get Flash Memo Block failed err=%u", kClassName, __func__, result);
    return DisplayError(out, kReadFailed, mode);
  }
  if (!SignaturePasses(memo)) return DisplayError(out, kInvalidSignature, mode);
  return DisplayFlashInfo(out, memo, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex Adapter information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get [adapter identifier]\r\n"}};

constexpr NodeClass kClass = {kClassName, "Adapter flashinfo", kLeaves, kUsage};

}  // namespace

AdapterFlashInfoCmdsProcessor::AdapterFlashInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
