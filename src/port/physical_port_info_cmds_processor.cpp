#include "port/physical_port_info_cmds_processor.h"

#include <iterator>
#include <string>

#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter, kHostNotFound, kFileNotFound, kAdapterNotFound, kMemoryError,
};

// Link width and speed as the PCI Express Link Capabilities and Link Status registers code them. Intended:
// "x32" and "32 Gtps" have other codes than in the standard.
constexpr CodeText kPciWidths[] = {{1, "x1"}, {2, "x2"}, {4, "x4"}, {8, "x8"}, {16, "x16"}, {24, "x32"}};
constexpr CodeText kPciSpeeds[] = {
    {1, "2.5 Gtps"}, {2, "5 Gtps"}, {3, "8 Gtps"}, {4, "16 Gtps"}, {8, "32 Gtps"},
};

constexpr CodeText kInterfaceTypes[] = {
    {CodeOf(PortInterfaceType::kPhysical), "Physical Port"},
    {CodeOf(PortInterfaceType::kNpivVirtual), "NPIV Virtual Port"},
};
constexpr CodeText kProtocolTypes[] = {
    {CodeOf(ProtocolType::kFc), "FC"},
    {CodeOf(ProtocolType::kFcoe), "FCoE"},
};
constexpr CodeText kConnectionModes[] = {
    {CodeOf(ConnectionMode::kPointToPoint), "Point to Point"},
    {CodeOf(ConnectionMode::kLoop), "Loop"},
};

constexpr CodeText kPortTypes[] = {
    {1, "Node Port"},           {2, "Loop Port"},      {3, "Fabric Private Loop Port"},
    {4, "Node Or Loop Port"},   {5, "Fabric Port"},    {6, "Fabric Public Loop Port"},
    {7, "Loop Transport Port"}, {8, "Expansion Port"}, {9, "Bridge Port"},
};

// Intended: a state that was read shows "false", whatever its flag says.
constexpr CodeText kLockdownTexts[] = {
    {CodeOf(LockdownReadStatus::kRead), "false"},
    {CodeOf(LockdownReadStatus::kUnsupportedDriver), "Unsupported Driver"},
    {CodeOf(LockdownReadStatus::kUnsupportedFirmware), "Unsupported Firmware"},
};

bool IsOfTheFourGroups(const PciIdentity& pci) {
  return IsAnyOf(pci, kElm | kHazel | kIris | kDahlia);
}

const char* PciWidthText(std::uint16_t link_word) {
  return TextOfCode(kPciWidths, (link_word >> 4) & 0x3fu);
}

const char* PciSpeedText(std::uint16_t link_word) {
  return TextOfCode(kPciSpeeds, link_word & 0x0fu);
}

// Intended: 1 and 2 Gbps are no maximum.
const char* MaximumSpeedText(std::uint8_t supported_speeds) {
  for (const LinkSpeed& speed : kLinkSpeeds) {
    if (speed.gbps >= 4 && IsSupported(supported_speeds, speed)) return speed.text;
  }
  return "Unknown";
}

// Slowest first.
std::string SupportedSpeedsText(std::uint8_t supported_speeds) {
  std::string text;
  for (auto speed = std::rbegin(kLinkSpeeds); speed != std::rend(kLinkSpeeds); ++speed) {
    if (IsSupported(supported_speeds, *speed)) text += std::to_string(speed->gbps) + " ";
  }
  return text + "Gbps";
}

const char* PortSpeedText(std::uint32_t code) {
  const LinkSpeed* const speed = SpeedOfCode(code);
  return speed == nullptr ? "Unknown" : speed->text;
}

// From 32 Gbps on forward error correction is always in use; at 16 Gbps the link flags say so, for the
// adapters that can have it.
bool IsFecInUse(const FCProtocolEntry& fc) {
  if (fc.port_speed >= k32Gbps.code) return true;
  return IsOfTheFourGroups(fc.pci) && fc.port_speed == k16Gbps.code && (fc.link_flags & kFecInUse) != 0;
}

const char* PortStateText(const FCProtocolEntry& fc) {
  if (fc.port_state == PortState::kOffline) return "Offline";
  if (!IsLinkUp(fc)) return "Unknown";
  return IsFecInUse(fc) ? "Online (FEC)" : "Online";
}

void PciNumberLine(ReportText& text, const char* label, std::uint8_t number) {
  text.Line("      %s: 0x%hhx\n", label, number);
}

void PositionLines(ReportText& text, const PhyPortEntry& port, const FCProtocolEntry& fc) {
  text.Line("      %s: %hhu\n", "Port Number", static_cast<std::uint8_t>(port.number));
  PciNumberLine(text, "PCI Bus Number", fc.pci_bus);
  PciNumberLine(text, "PCI Device Number", fc.pci_device);
  PciNumberLine(text, "PCI Function Number", fc.pci_function);
  TextLine(text, "PCI Bus Max Width", PciWidthText(fc.pci.link_capability));
  TextLine(text, "PCI Bus Negotiated Width", PciWidthText(fc.pci.link_status));
  TextLine(text, "PCI Bus Max Speed", PciSpeedText(fc.pci.link_capability));
  TextLine(text, "PCI Bus Negotiated Speed", PciSpeedText(fc.pci.link_status));
}

void NameLines(ReportText& text, const FCProtocolEntry& fc) {
  NameLine(text, "Node Name", fc.node_name);
  NameLine(text, "Port Name", fc.port_name);
  NameLine(text, "Principal Fabric WWN", fc.principal_fabric_name);
  NameLine(text, "Adjacent Fabric WWN", fc.adjacent_fabric_name);
}

void LinkLines(ReportText& text, const FCProtocolEntry& fc) {
  TextLine(text, "Maximum Speed", MaximumSpeedText(fc.supported_speeds));
  TextLine(text, "Supported Speeds", SupportedSpeedsText(fc.supported_speeds));
  TextLine(text, "Port Interface Type", TextOfCode(kInterfaceTypes, CodeOf(fc.interface_type)));
  TextLine(text, "Protocol Type", TextOfCode(kProtocolTypes, CodeOf(fc.protocol_type)));
  TextLine(text, "Port Type", TextOfCode(kPortTypes, fc.port_type));
  TextLine(text, "Port State", PortStateText(fc));
  TextLine(text, "Port Connection Mode", TextOfCode(kConnectionModes, CodeOf(fc.connection_mode)));
  TextLine(text, "Port Speed", PortSpeedText(fc.port_speed));
  PortIdLine(text, "Port ID", fc.port_id);
}

ComponentVersion ThreePartVersion(const std::uint8_t (&bytes)[4]) {
  return {bytes[0], bytes[1], bytes[2]};
}

void TwoPartVersionLine(ReportText& text, const char* label, const std::uint8_t (&bytes)[4]) {
  if (bytes[0] == 0 && bytes[1] == 0) return TextLine(text, label, "NA");
  text.Line("      %s: %hhu.%02hhu\n", label, bytes[0], bytes[1]);
}

// Intended: without a PEP SoftROM the line has the label of the MPI SoftROM.
void PepSoftRomLine(ReportText& text, const ComponentVersion& version) {
  const bool absent = version.AllZero() || version.AllOnes();
  VersionOrBlankLine(text, absent ? "Flash MPI SoftROM Version" : "Flash PEP SoftROM Version", version);
}

void FlashLines(ReportText& text, const FCProtocolEntry& fc, const FlashComponentVersions& components) {
  VersionLine(text, "Flash Firmware Version", ThreePartVersion(fc.flash_firmware_version));
  TextOrNaLine(text, "Flash BIOS Version", fc.flash_bios_version.View());
  TwoPartVersionLine(text, "Flash FCode Version", fc.flash_fcode_version);
  TwoPartVersionLine(text, "Flash EFI Version", fc.flash_efi_version);
  VersionLine(text, "Flash Preload Firmware Area Version", components.preload_firmware_area);
  VersionLine(text, "Flash FC Board Config Version", components.fc_board_config);
  if (HasManagementFirmware(fc.pci)) {
    VersionOrBlankLine(text, "Flash MPI Firmware Version", components.mpi_firmware);
    VersionOrBlankLine(text, "Flash PEP Firmware Version", components.pep_firmware);
    VersionOrBlankLine(text, "Flash PEP Board Config Version", components.pep_board_config);
    PepSoftRomLine(text, components.pep_softrom);
  }
  if (IsDeviceGroupDahlia(fc.pci)) {
    VersionOrBlankLine(text, "Flash MPI SoftROM Version", components.mpi_softrom);
    VersionOrBlankLine(text, "Flash PCIE Serdes Version", components.pcie_serdes);
  }
}

void LockdownLine(ReportText& text, const char* label, LockdownReadStatus status) {
  TextLine(text, label, TextOfCode(kLockdownTexts, CodeOf(status)));
}

void RunningLines(ReportText& text, const FCProtocolEntry& fc, const LockdownStatus& lockdown) {
  TextOrNaLine(text, "Running Firmware Version", fc.running_firmware_version.View());
  if (!HasManagementFirmware(fc.pci)) return;
  VersionOrBlankLine(text, "Running MPI Firmware Version", ThreePartVersion(fc.running_mpi_version));
  VersionOrBlankLine(text, "Running PEP Firmware Version", ThreePartVersion(fc.running_pep_version));
  LockdownLine(text, "Config Lockdown", lockdown.config_status);
  LockdownLine(text, "Firmware Update Lockdown", lockdown.firmware_update_status);
  LockdownLine(text, "MPI Lockdown", lockdown.mpi_status);
}

// What the library adds to the port's records.
struct Readings {
  BoardTemperature temperature;
  LockdownStatus lockdown;
  FlashComponentVersions components;
};

StatusCode DisplayPortInfo(CommandRun& run, const PortSelection& selected, const Readings& read) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  const FCProtocolEntry& fc = *selected.fc;
  FirstTextLine(text, "Model", selected.adapter->model.Empty() ? "NA" : selected.adapter->model.View());
  PositionLines(text, *selected.port, fc);
  TextLine(text, "Driver Version", fc.driver_version.View());
  if (HasManagementFirmware(fc.pci)) {
    TextOrNaLine(text, "Host NQN", fc.host_nqn.View());
    HostIdLine(text, "Host ID", fc.host_id);
  }
  NameLines(text, fc);
  LinkLines(text, fc);
  if (IsOfTheFourGroups(fc.pci)) {
    // Intended: unsigned, so that -1 shows as 4294967295.
    NumberLine(text, "Temperature In Celsius", static_cast<std::uint32_t>(read.temperature.celsius));
  }
  FlashLines(text, fc, read.components);
  RunningLines(text, fc, read.lockdown);
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  const DeviceHandle& handle = selected.fc->handle;

  OutputBracket bracket(run);
  if (!bracket.IsOpen()) return run.DisplayError(kFileNotFound);
  // What cannot be read is absent from the report, which succeeds all the same.
  Readings read = {};
  ClearUnlessRead(run, "Get phy port temperature",
                  TORPI_GetAdapterAsicBoardTemperature(&handle, &read.temperature), read.temperature);
  ClearUnlessRead(run, "Get Lockdown status", TORPI_GetLockdownStatus(&handle, &read.lockdown),
                  read.lockdown);
  const LibraryStatus components = TORPI_GetFlashComponentVersion(&handle, &read.components);
  bracket.Close();
  ClearUnlessRead(run, "Get Flash Component Version", components, read.components);
  return DisplayPortInfo(run, selected, read);
}

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex Physical Port information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass PhysicalPortInfoCmdsProcessor() {
  return {
      .name = "PhysicalPortInfoCmdsProcessor",
      .help_words = "Port info",
      .commands = TableOf<kCommands>(),
      .frame = {"PortInformation", "PortInfo", "PortInfoList"},
      .messages = TableOf<kMessages>(),
  };
}
