#include "reference/port_reference.h"

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

std::string_view OrNone(std::string_view text) {
  return text.empty() ? "NA" : text;
}

std::string Version(const Record& record, std::size_t at, bool ones_are_none, std::size_t count = 3) {
  if (record.AllAre(at, count, 0) || (ones_are_none && record.AllAre(at, count, 0xFF))) return "NA";
  std::string text = Decimal(record.U8(at));
  for (std::size_t i = 1; i < count; ++i) text += "." + Decimal(record.U8(at + i), 2);
  return text;
}

const char* Width(unsigned word) {
  switch (word >> 4 & 0x3F) {
    case 1:
      return "x1";
    case 2:
      return "x2";
    case 4:
      return "x4";
    case 8:
      return "x8";
    case 16:
      return "x16";
    case 24:
      return "x32";
    default:
      return "Unknown";
  }
}

const char* PciSpeed(unsigned word) {
  switch (word & 15) {
    case 1:
      return "2.5 Gtps";
    case 2:
      return "5 Gtps";
    case 3:
      return "8 Gtps";
    case 4:
      return "16 Gtps";
    case 8:
      return "32 Gtps";
    default:
      return "Unknown";
  }
}

const char* MaximumSpeed(unsigned mask) {
  if ((mask & 0x80) != 0) return "64 Gbps";
  if ((mask & 0x40) != 0) return "32 Gbps";
  if ((mask & 0x20) != 0) return "16 Gbps";
  if ((mask & 0x04) != 0) return "10 Gbps";
  if ((mask & 0x10) != 0) return "8 Gbps";
  if ((mask & 0x08) != 0) return "4 Gbps";
  return "Unknown";
}

std::string SupportedSpeeds(unsigned mask) {
  std::string text;
  if ((mask & 0x01) != 0) text += "1 ";
  if ((mask & 0x02) != 0) text += "2 ";
  if ((mask & 0x08) != 0) text += "4 ";
  if ((mask & 0x10) != 0) text += "8 ";
  if ((mask & 0x04) != 0) text += "10 ";
  if ((mask & 0x20) != 0) text += "16 ";
  if ((mask & 0x40) != 0) text += "32 ";
  if ((mask & 0x80) != 0) text += "64 ";
  return text + "Gbps";
}

const char* PortType(unsigned code) {
  constexpr const char* kTypes[] = {"Unknown",
                                    "Node Port",
                                    "Loop Port",
                                    "Fabric Private Loop Port",
                                    "Node Or Loop Port",
                                    "Fabric Port",
                                    "Fabric Public Loop Port",
                                    "Loop Transport Port",
                                    "Expansion Port",
                                    "Bridge Port"};
  return code < 10 ? kTypes[code] : "Unknown";
}

const char* PortSpeed(std::uint32_t code) {
  switch (code) {
    case 1:
      return "1 Gbps";
    case 2:
      return "2 Gbps";
    case 4:
      return "4 Gbps";
    case 8:
      return "8 Gbps";
    case 16:
      return "10 Gbps";
    case 22:
      return "16 Gbps";
    case 50:
      return "32 Gbps";
    case 100:
      return "64 Gbps";
    default:
      return "Unknown";
  }
}

const char* State(const Record& fc, bool of_the_four) {
  const unsigned code = fc.U8(612);
  if (code == 3) return "Offline";
  if (code != 1) return "Unknown";
  const std::uint32_t speed = fc.U32(652);
  const bool fec = speed > 49 || (of_the_four && speed == 22 && fc.Bit(661, 7));
  return fec ? "Online (FEC)" : "Online";
}

const char* Lockdown(const Record& lockdown, std::size_t at) {
  switch (lockdown.U32(at)) {
    case 0:
      return "false";
    case 0x76:
      return "Unsupported Driver";
    case 0x86:
      return "Unsupported Firmware";
    default:
      return "Unknown";
  }
}

// The components whose lines a port and an adapter have in common; `swapped` is for the label of a port that
// lacks the PEP SoftROM.
void AddComponents(Report& report, const Record& components, const Families& families, bool swapped) {
  report.Line("Flash Preload Firmware Area Version", Version(components, 37, false));
  report.Line("Flash FC Board Config Version", Version(components, 43, false));
  if (families.Managed()) {
    report.Line("Flash MPI Firmware Version", Version(components, 49, true));
    report.Line("Flash PEP Firmware Version", Version(components, 19, true));
    report.Line("Flash PEP Board Config Version", Version(components, 31, true));
    const std::string softrom = Version(components, 25, true);
    report.Line(swapped && softrom == "NA" ? "Flash MPI SoftROM Version" : "Flash PEP SoftROM Version",
                softrom);
  }
  if (families.dahlia) {
    report.Line("Flash MPI SoftROM Version", Version(components, 55, true));
    report.Line("Flash PCIE Serdes Version", Version(components, 61, true));
  }
}

}  // namespace

std::string PortDocument(bool xml, const PortBytes& bytes) {
  const Record adapter(bytes.adapter);
  const Record port(bytes.port);
  const Record fc(bytes.fc);
  const Record lockdown(bytes.lockdown);
  const Families families(fc);
  const bool of_the_four = families.elm || families.Managed();
  Report report(4096);
  report.First("Model", OrNone(adapter.Text(156, 32)));
  report.Number("Port Number", port.U8(0));
  report.Line("PCI Bus Number", "0x" + Hex(fc.U8(2672)));
  report.Line("PCI Device Number", "0x" + Hex(fc.U8(2673)));
  report.Line("PCI Function Number", "0x" + Hex(fc.U8(2674)));
  report.Line("PCI Bus Max Width", Width(fc.U16(78)));
  report.Line("PCI Bus Negotiated Width", Width(fc.U16(80)));
  report.Line("PCI Bus Max Speed", PciSpeed(fc.U16(78)));
  report.Line("PCI Bus Negotiated Speed", PciSpeed(fc.U16(80)));
  report.Line("Driver Version", fc.Text(108, 52));
  if (families.Managed()) {
    report.Line("Host NQN", OrNone(fc.Text(2176, 256)));
    report.Line("Host ID", fc.AllAre(2160, 16, 0) ? "NA" : fc.Octets(2160, 16, ""));
  }
  report.Line("Node Name", fc.Name(0));
  report.Line("Port Name", fc.Name(8));
  report.Line("Principal Fabric WWN", fc.Name(668));
  report.Line("Adjacent Fabric WWN", fc.Name(676));
  report.Line("Maximum Speed", MaximumSpeed(fc.U8(664)));
  report.Line("Supported Speeds", SupportedSpeeds(fc.U8(664)));
  const unsigned interface_type = fc.U16(462);
  report.Line("Port Interface Type", interface_type == 1   ? "Physical Port"
                                     : interface_type == 3 ? "NPIV Virtual Port"
                                                           : "Unknown");
  report.Line("Protocol Type", fc.U32(2676) == 0 ? "FC" : "FCoE");
  report.Line("Port Type", PortType(fc.U8(611)));
  report.Line("Port State", State(fc, of_the_four));
  report.Line("Port Connection Mode", fc.U8(613) == 1   ? "Point to Point"
                                      : fc.U8(613) == 2 ? "Loop"
                                                        : "Unknown");
  report.Line("Port Speed", PortSpeed(fc.U32(652)));
  report.Line("Port ID", fc.PortId(608));
  if (of_the_four) {
    const std::uint16_t celsius = Record(bytes.temperature).U16(0);
    report.Number("Temperature In Celsius", celsius < 0x8000 ? celsius : 0xFFFF0000U | celsius);
  }
  report.Line("Flash Firmware Version", Version(fc, 476, false));
  report.Line("Flash BIOS Version", OrNone(fc.Text(428, 32)));
  report.Line("Flash FCode Version", Version(fc, 484, false, 2));
  report.Line("Flash EFI Version", Version(fc, 480, false, 2));
  AddComponents(report, Record(bytes.components), families, true);
  report.Line("Running Firmware Version", OrNone(fc.Text(396, 32)));
  if (families.Managed()) {
    report.Line("Running MPI Firmware Version", Version(fc, 488, true));
    report.Line("Running PEP Firmware Version", Version(fc, 492, true));
    report.Line("Config Lockdown", Lockdown(lockdown, 4));
    report.Line("Firmware Update Lockdown", Lockdown(lockdown, 8));
    report.Line("MPI Lockdown", Lockdown(lockdown, 12));
  }
  return ReportDocument(xml, {"PortInformation", "PortInfo", "PortInfoList"}, report.Text());
}

std::string AdapterDocument(bool xml, const PortBytes& bytes) {
  constexpr const char* kTypes[] = {"Unknown",       "Ethernet Adapter", "Fibre Channel Adapter",
                                    "iSCSI Adapter", "Tavora CNA",       "Ethernet CNA",
                                    "FCoE CNA",      "iSCSI CNA",        "RDMA CNA"};
  const Record adapter(bytes.adapter);
  const Record fc(bytes.fc);
  const Record memo(bytes.memo);
  const Families families(fc);
  Report report(4096);
  report.First("Manufacturer", adapter.Text(36, 80));
  report.Line("Model", OrNone(adapter.Text(156, 32)));
  report.Line("Serial Number", OrNone(adapter.Text(0, 32)));
  report.Line("Vendor ID", "0x" + Hex(adapter.U16(116)));
  report.Line("Device ID", "0x" + Hex(fc.U16(30)));
  report.Line("Subsystem Device ID", "0x" + Hex(adapter.U16(120)));
  report.Line("Subsystem Vendor ID", "0x" + Hex(adapter.U16(118)));
  report.Line("PCI Bus ID", "0x" + Hex(adapter.U16(122)));
  report.Number("Chip Revision", adapter.U32(348));
  report.Line("Type", adapter.U32(32) < 9 ? kTypes[adapter.U32(32)] : "Unknown");
  report.Line("Multiboot Version", OrNone(adapter.Text(316, 32)));
  report.Line("Flash Firmware Version", OrNone(adapter.Text(284, 32)));
  report.Line("Flash BIOS Version", OrNone(adapter.Text(188, 32)));
  report.Line("Flash FCode Version", OrNone(adapter.Text(220, 32)));
  report.Line("Flash EFI Version", OrNone(adapter.Text(252, 32)));
  AddComponents(report, Record(bytes.components), families, false);
  const bool has_memo = families.elm_only || families.Managed();
  const bool is_signed = memo.U8(0) == 'F' && memo.U8(1) == 'M' && memo.U8(2) == 'B' && memo.U8(3) == 'S';
  if (has_memo && is_signed && !memo.AllAre(16, 3, 0)) {
    report.Line("Family Firmware Version", Version(memo, 16, false));
  }
  return ReportDocument(xml, {"AdapterInformation", "General Parameters", "GeneralParametersList"},
                        report.Text());
}

std::string PortStatisticsDocument(bool xml, const PortBytes& bytes, bool firmware) {
  constexpr const char* kDriver[] = {"Controller Error Count", "Device Error Count", "IO Count",
                                     "Mega Bytes Count",       "LIP Reset Count",    "Interrupt Count"};
  constexpr const char* kFirmware[] = {"Link Failure Count",
                                       "Loss Of Sync Count",
                                       "Loss Of Signal Count",
                                       "Primitive Sequence Protocol Error Count",
                                       "Invalid Transmission Word Count",
                                       "Invalid CRC Count"};
  const Record fc(bytes.fc);
  Report report(2048);
  for (std::size_t i = 0; i < 6; ++i) {
    const char* const label = firmware ? kFirmware[i] : kDriver[i];
    const std::uint32_t count = fc.U32((firmware ? 776U : 752U) + 4 * i);
    if (i == 0) {
      report.First(label, Decimal(count));
    } else {
      report.Number(label, count);
    }
  }
  return ReportDocument(xml, {"FCStatistics", "FCStats", "FCStatsList"}, report.Text());
}

}  // namespace reference
