#include "adapter/adapter_info_cmds_processor.h"

#include <cstring>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter, kHostNotFound, kFileNotFound, kAdapterNotFound, kMemoryError,
};

constexpr InlineText<21> kTypeTexts[] = {
    "Unknown",       "Ethernet Adapter", "Fibre Channel Adapter",
    "iSCSI Adapter", "Tavora CNA",       "Ethernet CNA",
    "FCoE CNA",      "iSCSI CNA",        "RDMA CNA",
};

const char* TypeText(std::uint32_t type) {
  return type < std::size(kTypeTexts) ? kTypeTexts[type].CString() : "Unknown";
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

StatusCode DisplayAdapterInfo(CommandRun& run, const AdapterEntry& adapter, const FCProtocolEntry& fc,
                              const FlashComponentVersions& components, const FlashMemoBlock& memo) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  IdentityLines(text, adapter, fc);
  FlashLines(text, adapter, fc.pci, components);
  FamilyFirmwareLine(text, memo);
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  AdapterSelection selected;
  if (const StatusCode status = SelectAdapter(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const FCProtocolEntry& fc = *selected.fc;

  OutputBracket bracket(run);
  if (!bracket.IsOpen()) return run.DisplayError(kFileNotFound);
  // What cannot be read is absent from the report, which succeeds all the same.
  FlashComponentVersions components = {};
  ClearUnlessRead(run, "Get Flash Component Version", TORPI_GetFlashComponentVersion(&fc.handle, &components),
                  components);
  FlashMemoBlock memo = {};
  if (HasFlashMemoBlock(fc.pci)) {
    ClearUnlessRead(run, "Get Flash Memo Block", TORPI_GetAdapterFlashMemoBlock(&fc.handle, &memo), memo);
  }
  bracket.Close();
  return DisplayAdapterInfo(run, *selected.adapter, fc, components, memo);
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Adapter information", "Usage: get [adapter identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass AdapterInfoCmdsProcessor() {
  return {
      .name = "AdapterInfoCmdsProcessor",
      .help_words = "Adapter info",
      .commands = TableOf<kCommands>(),
      .frame = {"AdapterInformation", "General Parameters", "GeneralParametersList"},
      .messages = TableOf<kMessages>(),
  };
}
