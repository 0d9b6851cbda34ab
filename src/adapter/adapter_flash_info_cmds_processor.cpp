#include "adapter/adapter_flash_info_cmds_processor.h"

#include <cstring>
#include <string>
#include <string_view>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report_text.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 1024;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,    {kReadFailed, "Failed, Flash Info read failed"},
    kHostNotFound,        kFileNotFound,
    kAdapterNotFound,     kInvalidSignature,
    kFeatureNotSupported, kMemoryError,
};

struct FlashTool {
  InlineText<4> id;
  InlineText<40> name;
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

// One byte of the signature at its place is enough.
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

StatusCode DisplayFlashInfo(CommandRun& run, const FlashMemoBlock& memo) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
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
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  AdapterSelection selected;
  if (const StatusCode status = SelectAdapter(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const FCProtocolEntry& fc = *selected.fc;
  if (!HasFlashMemoBlock(fc.pci)) {
    return run.DisplayError(run.Refuse(kFeatureNotSupported, "Command not supported for this adapter"));
  }
  FlashMemoBlock memo = {};
  // One status for every failure, maintenance mode included.
  const StatusCode status = CallLibraryWithOneStatus(run, "Get Flash Memo Block", kReadFailed, [&] {
    return TORPI_GetAdapterFlashMemoBlock(&fc.handle, &memo);
  });
  if (status != kSuccess) return run.DisplayError(status);
  if (!SignaturePasses(memo)) {
    return run.DisplayError(run.Refuse(kInvalidSignature, "Invalid Flash Memo Block signature"));
  }
  return DisplayFlashInfo(run, memo);
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Adapter information", "Usage: get [adapter identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass AdapterFlashInfoCmdsProcessor() {
  return {
      .name = "AdapterFlashInfoCmdsProcessor",
      .help_words = "Adapter flashinfo",
      .commands = TableOf<kCommands>(),
      .frame = {"AdapterFlashInformation", "Flash Info", "FlashInfoList"},
      .messages = TableOf<kMessages>(),
  };
}
