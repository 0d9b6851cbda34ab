#include "target/fc_target_info_cmds_processor.h"

#include <cstring>
#include <string_view>

#include "congestion/vocabulary.h"
#include "discovery/host_walk.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCTargetInfoCmdsProcessor";

constexpr ReportFrame kFrame = {"TargetInformation", "TargetInfo", "TargetInfoList"};
constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {kInvalidParameter, kHostNotFound, kAdapterNotFound, kMemoryError};

// SCSI peripheral device types, with the names that this report has for them.
const char* ProductTypeText(const TargetEntry& target) {
  switch (target.product_type) {
    case 0:
      return IsNvmeTarget(target) ? "NVMe Disk" : "FCP Disk";
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

// What a remote-port record says about the target.
struct RemotePort {
  const char* type = "Unknown";
  const char* session_state = "NA";
  const char* secure_mode = "Disabled";
};

// The three bytes of a port identifier, as a record's 32-bit word holds them in its low 24 bits.
bool SamePortId(std::uint32_t word, const PortId& port_id) {
  return std::memcmp(&word, &port_id, sizeof port_id) == 0;
}

bool HasCurrentRecord(const FCProtocolEntry& fc, const TargetEntry& target) {
  return (fc.driver_flags & kCurrentRemotePorts) != 0 && target.remote_port_name == target.port_name &&
         SamePortId(target.remote_port_id, target.port_id);
}

bool HasOldRecord(const TargetEntry& target) {
  return target.old_port_name == target.port_name && SamePortId(target.old_port_id, target.port_id);
}

RemotePort ReadCurrentRecord(const TargetEntry& target) {
  static constexpr const char* kTypes[] = {"Unknown", "Initiator", "Target", "Initiator-Target"};
  static constexpr const char* kSessionStates[] = {
      "NA", "NA", "Auth Pending", "Auth Failed", "Auth Complete", "Auth Terminate"};
  constexpr std::uint8_t kSecure = 0x10;
  return {.type = kTypes[target.remote_flags & 0x03u],
          .session_state = target.remote_session_state < std::size(kSessionStates)
                               ? kSessionStates[target.remote_session_state]
                               : "Auth Unknown",
          .secure_mode = (target.remote_flags & kSecure) != 0 ? "Enabled" : "Disabled"};
}

RemotePort ReadOldRecord(const TargetEntry& target) {
  static constexpr const char* kTypes[] = {"Unknown", "Target", "Initiator", "Initiator-Target"};
  RemotePort remote;
  if (target.old_remote_type < std::size(kTypes)) remote.type = kTypes[target.old_remote_type];
  const std::uint8_t state = target.old_session_state;
  if (target.old_secure_mode == 0) {
    remote.session_state = state <= 1 ? "NA" : state <= 3 ? "Auth Pending" : "Auth Failed";
  } else if (target.old_secure_mode == 1 && state <= 5) {
    remote.session_state = "Auth Complete";
    remote.secure_mode = "Enabled";
  } else {
    remote.session_state = "Auth Unknown";
  }
  return remote;
}

RemotePort ReadRemotePort(const FCProtocolEntry& fc, const TargetEntry& target) {
  if (HasCurrentRecord(fc, target)) {
    DebugLogLevel(kDebugTrace, "%s::%s: Got Remote Port Info", kClassName, __func__);
    return ReadCurrentRecord(target);
  }
  return HasOldRecord(target) ? ReadOldRecord(target) : RemotePort{};
}

const char* StatusText(const TargetEntry& target) {
  if (IsOnline(target)) return "Online";
  return IsUnconfigured(target) ? "Unconfigured" : "Offline";
}

void IdentityLines(ReportText& text, const TargetEntry& target, bool is_nvme) {
  FirstNameLine(text, "Target Node Name", target.node_name);
  NameLine(text, "Target Port Name", target.port_name);
  PortIdLine(text, "Target Port ID", target.port_id);
  NumberLine(text, "Target Number", target.number);
  TextLine(text, "Vendor ID", target.vendor_id.View());
  TextLine(text, "Product ID", target.product_id.View());
  TextLine(text, "Product Revision", is_nvme ? target.nvme_revision.View() : target.fcp_revision.View());
  TextLine(text, "Product Type", ProductTypeText(target));
  TextLine(text, "Serial Number", target.serial_number.View());
}

void StorageLines(ReportText& text, const TargetEntry& target, bool is_nvme) {
  if (is_nvme) {
    TextLine(text, "Storage NQN", target.nqn.View());
    text.Line("      %s: 0x%x\n", "Storage Controller ID", target.controller_id);
  }
  NumberLine(text, is_nvme ? "Namespace Count" : "Lun Count", target.lun_count);

  // The list is appended piece by piece: what no longer fits is left out, piece by piece.
  text.Line("      %s: ", is_nvme ? "Namespaces" : "Luns");
  const char* separator = "";
  for (const LunEntry& lun : LunsOf(target)) {
    text.Line("%s%s_%u", separator, is_nvme ? "NSID" : "LUN", lun.number);
    separator = ", ";
  }
  text.Line("\n");
}

void StateLines(ReportText& text, const FCProtocolEntry& fc, const TargetEntry& target) {
  const RemotePort remote = ReadRemotePort(fc, target);
  TextLine(text, "Remote Type", remote.type);
  TextLine(text, "Session State", remote.session_state);
  TextLine(text, "Secure Mode", remote.secure_mode);
  TextLine(text, "Congestion Current State", CongestionStateText(target.congestion_state));
  TextLine(text, "Virtual Lane", TargetVirtualLaneText(fc, target));
  TextLine(text, "I/O Throttling", TargetThrottlingText(fc, target));
  TextLine(text, "Status", StatusText(target));
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayTargetInfo(Serializer& out, const FCProtocolEntry& fc, const TargetEntry& target,
                             OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  const bool is_nvme = IsNvmeTarget(target);
  IdentityLines(text, target, is_nvme);
  StorageLines(text, target, is_nvme);
  StateLines(text, fc, target);
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  TargetSelection selected;
  if (const StatusCode status = GetTargetFromTargetString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return DisplayTargetInfo(out, *selected.fc, *selected.target, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;

constexpr const char* kGetDescription = "get Sorvex FC Target information";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"help", 1, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 2, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {{2, "Usage: get [port identifier]\r\n"}};

constexpr NodeClass kClass = {kClassName, "FC Target info", kLeaves, kUsage};

}  // namespace

FCTargetInfoCmdsProcessor::FCTargetInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
