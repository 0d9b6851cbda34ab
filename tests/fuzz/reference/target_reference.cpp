#include "reference/target_reference.h"

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

const char* ProductType(std::uint32_t code, bool nvme) {
  switch (code) {
    case 0:
      return nvme ? "NVMe Disk" : "FCP Disk";
    case 1:
      return "Tape";
    case 4:
      return "Optical";
    case 5:
      return "CDROM";
    case 8:
      return "Changer";
    case 12:
      return "RAID";
    case 13:
      return "SAF-TE";
    default:
      return "Device";
  }
}

struct RemotePort {
  const char* type = "Unknown";
  const char* session = "NA";
  const char* secure = "Disabled";
};

RemotePort CurrentRemotePort(const Record& target) {
  constexpr const char* kTypes[] = {"Unknown", "Initiator", "Target", "Initiator-Target"};
  RemotePort remote;
  remote.type = kTypes[target.U8(404) & 3];
  const std::uint32_t session = target.U32(432);
  constexpr const char* kSessions[] = {
      "NA", "NA", "Auth Pending", "Auth Failed", "Auth Complete", "Auth Terminate"};
  remote.session = session < 6 ? kSessions[session] : "Auth Unknown";
  if (target.Bit(404, 4)) remote.secure = "Enabled";
  return remote;
}

RemotePort OldRemotePort(const Record& target) {
  RemotePort remote;
  const unsigned type = target.U8(340);
  if (type == 1) remote.type = "Target";
  if (type == 2) remote.type = "Initiator";
  if (type == 3) remote.type = "Initiator-Target";
  const unsigned secure = target.U8(341);
  const unsigned session = target.U8(342);
  if (secure == 0) {
    remote.session = session <= 1 ? "NA" : session <= 3 ? "Auth Pending" : "Auth Failed";
  } else if (secure == 1 && session <= 5) {
    remote.session = "Auth Complete";
    remote.secure = "Enabled";
  } else {
    remote.session = "Auth Unknown";
  }
  return remote;
}

RemotePort FindRemotePort(const Record& port, const Record& target) {
  const std::uint32_t id = target.U32(16) & 0xFFFFFF;
  if (port.Bit(180, 0) && target.U64(408) == target.U64(8) && (target.U32(400) & 0xFFFFFF) == id) {
    return CurrentRemotePort(target);
  }
  if (target.U32(332) == target.U32(8) && target.U32(336) == target.U32(12) &&
      (target.U32(328) & 0xFFFFFF) == id) {
    return OldRemotePort(target);
  }
  return {};
}

const char* VirtualLane(const Record& port, const Record& target) {
  if (!Families(port).dahlia) return "NA";
  const unsigned lane = target.U8(50);
  if (lane == 1) return "Slow";
  if (lane == 2) return "Normal";
  if (lane == 3) return "Fast";
  return port.Bit(163, 6) ? "Non-Operational" : "NA";
}

const char* Throttling(const Record& port, const Record& target) {
  if (!Families(port).Managed() || target.U8(51) == 1) return "None";
  if (target.U8(51) == 2) return "Active";
  return port.Bit(163, 7) ? "Disabled" : "None";
}

const char* Status(const Record& target) {
  if (target.Bit(194, 1) && target.Bit(196, 0)) return "Online";
  return target.Bit(192, 6) ? "Unconfigured" : "Offline";
}

void AddTarget(Report& report, const Record& target) {
  report.First("Node Name", target.Name(0));
  report.Line("Port Name", target.Name(8));
  report.Line("Port Id", target.PortId(16));
  report.Number("Target Number", target.U16(22));
}

// A speed of the library's codes: its rank, 0 for one without.
struct Speed {
  std::uint32_t code;
  int rank;
  const char* text;
};

constexpr Speed kSpeeds[] = {{1, 1, "1_Gbps"},   {2, 2, "2_Gbps"},   {4, 3, "4_Gbps"},   {8, 4, "8_Gbps"},
                             {16, 0, "10_Gbps"}, {22, 5, "16_Gbps"}, {50, 6, "32_Gbps"}, {100, 7, "64_Gbps"}};

}  // namespace

std::string TargetDocument(bool xml, const void* port_bytes, const void* target_bytes,
                           std::span<const std::uint16_t> luns) {
  const Record port(port_bytes);
  const Record target(target_bytes);
  const bool nvme = target.Bit(197, 3);
  Report report(4096);
  report.First("Target Node Name", target.Name(0));
  report.Line("Target Port Name", target.Name(8));
  report.Line("Target Port ID", target.PortId(16));
  report.Number("Target Number", target.U16(22));
  report.Line("Vendor ID", target.Text(164, 8));
  report.Line("Product ID", target.Text(172, 16));
  report.Line("Product Revision", nvme ? target.Text(528, 8) : target.Text(188, 4));
  report.Line("Product Type", ProductType(target.U32(248), nvme));
  report.Line("Serial Number", target.Text(260, 64));
  if (nvme) {
    report.Line("Storage NQN", target.Text(560, 256));
    report.Line("Storage Controller ID", "0x" + Hex(target.U16(542)));
  }
  report.Number(nvme ? "Namespace Count" : "Lun Count", target.U32(224));
  report.Add(nvme ? "      Namespaces: " : "      Luns: ");
  bool first = true;
  for (const std::uint16_t lun : luns) {
    report.Add((first ? "" : ", ") + std::string(nvme ? "NSID_" : "LUN_") + Decimal(lun));
    first = false;
  }
  report.Add("\n");
  const RemotePort remote = FindRemotePort(port, target);
  report.Line("Remote Type", remote.type);
  report.Line("Session State", remote.session);
  report.Line("Secure Mode", remote.secure);
  const unsigned congestion = target.U8(48);
  report.Line("Congestion Current State", congestion == 0   ? "Healthy"
                                          : congestion == 1 ? "Congested"
                                                            : "Unknown");
  report.Line("Virtual Lane", VirtualLane(port, target));
  report.Line("I/O Throttling", Throttling(port, target));
  report.Line("Status", Status(target));
  return ReportDocument(xml, {"TargetInformation", "TargetInfo", "TargetInfoList"}, report.Text());
}

std::string TargetStatisticsDocument(bool xml, const void* target, const void* statistics) {
  const Record counters(statistics);
  Report report(4096);
  AddTarget(report, Record(target));
  report.Number("Link Failure Count", counters.U32(24));
  report.Number("Loss Of Sync Count", counters.U32(28));
  report.Number("Loss Of Signal Count", counters.U32(32));
  report.Number("Primitive Sequence Protocol Error Count", counters.U32(36));
  report.Number("Invalid Transmission Word Count", counters.U32(40));
  report.Number("Invalid CRC Count", counters.U32(44));
  return ReportDocument(xml, {"TargetStatistics", "Target Stats", "TargetStatsList"}, report.Text());
}

std::string TargetSpeedDocument(bool xml, const void* port_bytes, const void* target, std::uint32_t speed) {
  constexpr Frame kFrame = {"TargetTLSDInformation", "Target TLSD Info", "TargetTLSDInfoList"};
  const Record port(port_bytes);
  if (port.U16(462) == 3) return ErrorDocument(xml, kFrame, "Failed, Feature not supported for virtual port");
  int most = 0;
  for (const int bit : {0, 1, 3, 4, 5, 6, 7}) {
    if (port.Bit(664, bit)) most = bit > 1 ? bit : bit + 1;
  }
  const char* text = "Unknown";
  for (const Speed& known : kSpeeds) {
    if (known.code != speed) continue;
    text = known.text;
    if (known.rank <= most) break;
    text = "Unknown";
    for (const Speed& shown : kSpeeds) {
      if (most > 0 && shown.rank == most) text = shown.text;
    }
    break;
  }
  Report report(4096);
  AddTarget(report, Record(target));
  report.Line("Target Maximum Link Speed", text);
  return ReportDocument(xml, kFrame, report.Text());
}

}  // namespace reference
