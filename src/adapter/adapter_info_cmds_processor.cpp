#include "adapter/adapter_info_cmds_processor.h"

#include <cstring>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/output_bracket.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "AdapterInfoCmdsProcessor";

constexpr ReportFrame kFrame = {"AdapterInformation", "General Parameters", "GeneralParametersList"};
constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter, kHostNotFound, kFileNotFound, kAdapterNotFound, kMemoryError,
};

constexpr const char* kTypeTexts[] = {
    "Unknown",       "Ethernet Adapter", "Fibre Channel Adapter",
    "iSCSI Adapter", "Tavora CNA",       "Ethernet CNA",
    "FCoE CNA",      "iSCSI CNA",        "RDMA CNA",
};

const char* TypeText(std::uint32_t type) {
  return type < std::size(kTypeTexts) ? kTypeTexts[type] : "Unknown";
}

void IdLine(ReportText& text, const char* label, std::uint16_t value) {
  text.Line("      %s: 0x%x\n", label, value);
}

void IdentityLines(ReportText& text, const AdapterEntry& adapter, const FCProtocolEntry& fc) {
  FirstTextLine(text, "Manufacturer", adapter.manufacturer.View());
  TextOrNaLine(text, "Model", adapter.model.View());
  TextOrNaLine(text, "Serial Number", adapter.serial_number.View());
  IdLine(text, "Vendor ID", adapter.vendor_id);
  IdLine(text, "Device ID", fc.pci.device_id);
  IdLine(text, "Subsystem Device ID", adapter.subsystem_device_id);
  IdLine(text, "Subsystem Vendor ID", adapter.subsystem_vendor_id);
  IdLine(text, "PCI Bus ID", adapter.bus_id);
  text.Line("      %s: %u\n", "Chip Revision", adapter.chip_revision);
  TextLine(text, "Type", TypeText(adapter.type));
}

void FlashLines(ReportText& text, const AdapterEntry& adapter, const PciIdentity& pci,
                const FlashComponentVersions& components) {
  TextOrNaLine(text, "Multiboot Version", adapter.multiboot_version.View());
  TextOrNaLine(text, "Flash Firmware Version", adapter.flash_firmware_version.View());
  TextOrNaLine(text, "Flash BIOS Version", adapter.flash_bios_version.View());
  TextOrNaLine(text, "Flash FCode Version", adapter.flash_fcode_version.View());
  TextOrNaLine(text, "Flash EFI Version", adapter.flash_efi_version.View());
  VersionLine(text, "Flash Preload Firmware Area Version", components.preload_firmware_area);
  VersionLine(text, "Flash FC Board Config Version", components.fc_board_config);
  if (HasManagementFirmware(pci)) {
    VersionOrBlankLine(text, "Flash MPI Firmware Version", components.mpi_firmware);
    VersionOrBlankLine(text, "Flash PEP Firmware Version", components.pep_firmware);
    VersionOrBlankLine(text, "Flash PEP Board Config Version", components.pep_board_config);
    VersionOrBlankLine(text, "Flash PEP SoftROM Version", components.pep_softrom);
  }
  if (IsDeviceGroupDahlia(pci)) {
    VersionOrBlankLine(text, "Flash MPI SoftROM Version", components.mpi_softrom);
    VersionOrBlankLine(text, "Flash PCIE Serdes Version", components.pcie_serdes);
  }
}

void FamilyFirmwareLine(ReportText& text, const FlashMemoBlock& memo) {
  const bool signed_block = std::memcmp(memo.signature, "FMBS", sizeof memo.signature) == 0;
  if (signed_block && !memo.family_firmware.AllZero()) {
    VersionLine(text, "Family Firmware Version", memo.family_firmware);
  }
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayAdapterInfo(Serializer& out, const AdapterEntry& adapter, const FCProtocolEntry& fc,
                              const FlashComponentVersions& components, const FlashMemoBlock& memo,
                              OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  IdentityLines(text, adapter, fc);
  FlashLines(text, adapter, fc.pci, components);
  FamilyFirmwareLine(text, memo);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(words, selected); status != kSuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: Get phy port failed err=%u", kClassName, __func__, status);
    return DisplayError(out, status, mode);
  }
  const FCProtocolEntry& fc = *selected.fc;

  OutputBracket bracket(kClassName);
  if (!bracket.IsOpen()) return DisplayError(out, kFileNotFound, mode);
  // What cannot be read is reported as absent, with "Success".
  FlashComponentVersions components = {};
  if (const LibraryStatus result = TORPI_GetFlashComponentVersion(&fc.handle, &components);
      result != kLibrarySuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: Get Flash Component Version failed err=%u", kClassName, __func__,
                  result);
    components = {};
  }
  FlashMemoBlock memo = {};
  if (HasFlashMemoBlock(fc.pci)) {
    if (const LibraryStatus result = TORPI_GetAdapterFlashMemoBlock(&fc.handle, &memo);
        result != kLibrarySuccess) {
      DebugLogLevel(kDebugFailure, "%s::%s: Get Flash Memo Block failed err=%u", kClassName, __func__,
                    result);
      memo = {};
    }
  }
  bracket.Close();
  return DisplayAdapterInfo(out, *selected.adapter, fc, components, memo, mode);
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

constexpr NodeClass kClass = {kClassName, "Adapter info", kLeaves, kUsage};

}  // namespace

AdapterInfoCmdsProcessor::AdapterInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
