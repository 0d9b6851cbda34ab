#include "target/fc_target_info_cmds_processor.h"

#include <cstring>

#include "congestion/vocabulary.h"
#include "discovery/host_walk.h"
#include "discovery/port_lookup.h"
#include "framework/code_text.h"
#include "framework/inline_text.h"
#include "framework/report_lines.h"
#include "framework/table.h"

namespace {

constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {kInvalidParameter, kHostNotFound, kAdapterNotFound, kMemoryError};

// SCSI peripheral device types (SPC), with the names that this report has for them.
constexpr std::uint32_t kDisk = 0;
constexpr CodeText kProductTypes[] = {
    {1, "Tape"}, {4, "Optical"}, {5, "CDROM"}, {8, "Changer"}, {12, "RAID"}, {13, "SAF-TE"},
};

const char* ProductTypeText(const TargetEntry& target) {
  if (target.product_type == kDisk) return IsNvmeTarget(target) ? "NVMe Disk" : "FCP Disk";
  return TextOfCode(kProductTypes, target.product_type, "Device");
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
  static constexpr InlineText<16> kTypes[] = {"Unknown", "Initiator", "Target", "Initiator-Target"};
  static constexpr InlineText<14> kSessionStates[] = {
      "NA", "NA", "Auth Pending", "Auth Failed", "Auth Complete", "Auth Terminate"};
  constexpr std::uint8_t kRoles = 0x03;
  constexpr std::uint8_t kSecure = 0x10;
  return {.type = kTypes[target.remote_flags & kRoles],
          .session_state = target.remote_session_state < std::size(kSessionStates)
                               ? kSessionStates[target.remote_session_state].CString()
                               : "Auth Unknown",
          .secure_mode = (target.remote_flags & kSecure) != 0 ? "Enabled" : "Disabled"};
}

// The codes of the older record differ from those of the current one.
RemotePort ReadOldRecord(const TargetEntry& target) {
  static constexpr InlineText<16> kTypes[] = {"Unknown", "Target", "Initiator", "Initiator-Target"};
  static constexpr InlineText<12> kPlainStates[] = {"NA", "NA", "Auth Pending", "Auth Pending"};
  constexpr std::uint8_t kLastSecureState = 5;
  RemotePort remote;
  if (target.old_remote_type < std::size(kTypes)) remote.type = kTypes[target.old_remote_type];
  const std::uint8_t state = target.old_session_state;
  if (target.old_secure_mode == 0) {
    remote.session_state = state < std::size(kPlainStates) ? kPlainStates[state].CString() : "Auth Failed";
  } else if (target.old_secure_mode == 1 && state <= kLastSecureState) {
    remote.session_state = "Auth Complete";
    remote.secure_mode = "Enabled";
  } else {
    remote.session_state = "Auth Unknown";
  }
  return remote;
}

RemotePort ReadRemotePort(const CommandRun& run, const FCProtocolEntry& fc, const TargetEntry& target) {
  if (HasCurrentRecord(fc, target)) {
    run.Trace("Got Remote Port Info");
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

void StateLines(const CommandRun& run, ReportText& text, const FCProtocolEntry& fc,
                const TargetEntry& target) {
  const RemotePort remote = ReadRemotePort(run, fc, target);
  TextLine(text, "Remote Type", remote.type);
  TextLine(text, "Session State", remote.session_state);
  TextLine(text, "Secure Mode", remote.secure_mode);
  TextLine(text, "Congestion Current State", CongestionStateText(target.congestion_state));
  TextLine(text, "Virtual Lane", TargetVirtualLaneText(fc, target));
  TextLine(text, "I/O Throttling", TargetThrottlingText(fc, target));
  TextLine(text, "Status", StatusText(target));
}

StatusCode DisplayTargetInfo(CommandRun& run, const FCProtocolEntry& fc, const TargetEntry& target) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  const bool is_nvme = IsNvmeTarget(target);
  IdentityLines(text, target, is_nvme);
  StorageLines(text, target, is_nvme);
  StateLines(run, text, fc, target);
  return run.DisplayReport(text);
}

StatusCode CmdGetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectTarget(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  return DisplayTargetInfo(run, *selected.fc, *selected.target);
}

constexpr CommandRow kCommands[] = {
    // The usage text says "port": the identifier is a target's.
    {"get", "get Sorvex FC Target information", "Usage: get [port identifier]\r\n", &CmdGetCommon},
};

}  // namespace

NodeClass FCTargetInfoCmdsProcessor() {
  return {
      .name = "FCTargetInfoCmdsProcessor",
      .help_words = "FC Target info",
      .commands = TableOf<kCommands>(),
      .frame = {"TargetInformation", "TargetInfo", "TargetInfoList"},
      .messages = TableOf<kMessages>(),
  };
}
