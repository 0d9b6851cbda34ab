#include "recording/fields.h"

#include <array>
#include <cstddef>

// Place and size of a member, which no constant expression can take from a pointer to it.
#define FIELD(record, member) offsetof(record, member), sizeof(record::member)

namespace recording {
namespace {

constexpr Field kAdapterList[] = {
    {"count", FIELD(AdapterList, count), Form::kNumber},
};

constexpr Field kPhyPortEntry[] = {
    {"port number", FIELD(PhyPortEntry, number), Form::kNumber},
};

constexpr Field kAdapterEntry[] = {
    {"serial number", FIELD(AdapterEntry, serial_number), Form::kText, Identity::kSerial},
    {"type", FIELD(AdapterEntry, type), Form::kNumber},
    {"manufacturer", FIELD(AdapterEntry, manufacturer), Form::kText},
    {"vendor ID", FIELD(AdapterEntry, vendor_id), Form::kNumber},
    {"subsystem vendor ID", FIELD(AdapterEntry, subsystem_vendor_id), Form::kNumber},
    {"subsystem device ID", FIELD(AdapterEntry, subsystem_device_id), Form::kNumber},
    {"bus ID", FIELD(AdapterEntry, bus_id), Form::kNumber},
    {"model", FIELD(AdapterEntry, model), Form::kText},
    {"flash BIOS version", FIELD(AdapterEntry, flash_bios_version), Form::kText},
    {"flash FCode version", FIELD(AdapterEntry, flash_fcode_version), Form::kText},
    {"flash EFI version", FIELD(AdapterEntry, flash_efi_version), Form::kText},
    {"flash firmware version", FIELD(AdapterEntry, flash_firmware_version), Form::kText},
    {"multiboot version", FIELD(AdapterEntry, multiboot_version), Form::kText},
    {"chip revision", FIELD(AdapterEntry, chip_revision), Form::kNumber},
};

constexpr Field kFCProtocolEntry[] = {
    {"node name", FIELD(FCProtocolEntry, node_name), Form::kName, Identity::kName},
    {"port name", FIELD(FCProtocolEntry, port_name), Form::kName, Identity::kName},
    {"handle", FIELD(FCProtocolEntry, handle), Form::kHex},
    {"PCI vendor ID", FIELD(FCProtocolEntry, pci.vendor_id), Form::kNumber},
    {"PCI device ID", FIELD(FCProtocolEntry, pci.device_id), Form::kNumber},
    {"PCI subsystem vendor ID", FIELD(FCProtocolEntry, pci.subsystem_vendor_id), Form::kNumber},
    {"PCI subsystem device ID", FIELD(FCProtocolEntry, pci.subsystem_device_id), Form::kNumber},
    {"PCI link capability", FIELD(FCProtocolEntry, pci.link_capability), Form::kNumber},
    {"PCI link status", FIELD(FCProtocolEntry, pci.link_status), Form::kNumber},
    {"driver version", FIELD(FCProtocolEntry, driver_version), Form::kText},
    {"capabilities", FIELD(FCProtocolEntry, capabilities), Form::kNumber},
    {"driver flags", FIELD(FCProtocolEntry, driver_flags), Form::kNumber},
    {"port flags", FIELD(FCProtocolEntry, port_flags), Form::kNumber},
    {"running firmware version", FIELD(FCProtocolEntry, running_firmware_version), Form::kText},
    {"flash BIOS version", FIELD(FCProtocolEntry, flash_bios_version), Form::kText},
    {"interface type", FIELD(FCProtocolEntry, interface_type), Form::kNumber},
    {"ROM flags", FIELD(FCProtocolEntry, rom_flags), Form::kNumber},
    {"flash firmware version", FIELD(FCProtocolEntry, flash_firmware_version), Form::kVersion},
    {"flash EFI version", FIELD(FCProtocolEntry, flash_efi_version), Form::kVersion},
    {"flash FCode version", FIELD(FCProtocolEntry, flash_fcode_version), Form::kVersion},
    {"running MPI version", FIELD(FCProtocolEntry, running_mpi_version), Form::kVersion},
    {"running PEP version", FIELD(FCProtocolEntry, running_pep_version), Form::kVersion},
    {"port ID", FIELD(FCProtocolEntry, port_id), Form::kHex},
    {"port type", FIELD(FCProtocolEntry, port_type), Form::kNumber},
    {"port state", FIELD(FCProtocolEntry, port_state), Form::kNumber},
    {"connection mode", FIELD(FCProtocolEntry, connection_mode), Form::kNumber},
    {"port speed", FIELD(FCProtocolEntry, port_speed), Form::kNumber},
    {"link flags", FIELD(FCProtocolEntry, link_flags), Form::kNumber},
    {"supported speeds", FIELD(FCProtocolEntry, supported_speeds), Form::kNumber},
    {"principal fabric name", FIELD(FCProtocolEntry, principal_fabric_name), Form::kName, Identity::kName},
    {"adjacent fabric name", FIELD(FCProtocolEntry, adjacent_fabric_name), Form::kName, Identity::kName},
    {"congestion notifications", FIELD(FCProtocolEntry, congestion_notifications), Form::kNumber},
    {"link event type", FIELD(FCProtocolEntry, link_event_type), Form::kNumber},
    {"link event threshold ms", FIELD(FCProtocolEntry, link_event_threshold_ms), Form::kNumber},
    {"delivery reason", FIELD(FCProtocolEntry, delivery_reason), Form::kNumber},
    {"congestion event type", FIELD(FCProtocolEntry, congestion_event_type), Form::kNumber},
    {"congestion event period ms", FIELD(FCProtocolEntry, congestion_event_period_ms), Form::kNumber},
    {"congestion severity", FIELD(FCProtocolEntry, congestion_severity), Form::kNumber},
    {"fabric connection flags", FIELD(FCProtocolEntry, fabric_connection_flags), Form::kNumber},
    {"congestion state", FIELD(FCProtocolEntry, congestion_state), Form::kNumber},
    {"virtual lane", FIELD(FCProtocolEntry, virtual_lane), Form::kNumber},
    {"seconds since event", FIELD(FCProtocolEntry, seconds_since_event), Form::kNumber},
    {"link integrity events", FIELD(FCProtocolEntry, link_integrity_events), Form::kNumber},
    {"delivery notification events", FIELD(FCProtocolEntry, delivery_notification_events), Form::kNumber},
    {"IO throttling", FIELD(FCProtocolEntry, io_throttling), Form::kNumber},
    {"driver counters", FIELD(FCProtocolEntry, driver_counters), Form::kHex},
    {"firmware counters", FIELD(FCProtocolEntry, firmware_counters), Form::kHex},
    {"congestion alarms", FIELD(FCProtocolEntry, congestion_alarms), Form::kNumber},
    {"congestion warnings", FIELD(FCProtocolEntry, congestion_warnings), Form::kNumber},
    {"target count", FIELD(FCProtocolEntry, target_count), Form::kNumber},
    {"host ID", FIELD(FCProtocolEntry, host_id), Form::kHex, Identity::kHostId},
    {"host NQN", FIELD(FCProtocolEntry, host_nqn), Form::kText, Identity::kNqn},
    {"PCI bus", FIELD(FCProtocolEntry, pci_bus), Form::kNumber},
    {"PCI device", FIELD(FCProtocolEntry, pci_device), Form::kNumber},
    {"PCI function", FIELD(FCProtocolEntry, pci_function), Form::kNumber},
    {"protocol type", FIELD(FCProtocolEntry, protocol_type), Form::kNumber},
};

constexpr Field kLunEntry[] = {
    {"LUN number", FIELD(LunEntry, number), Form::kNumber},
    {"vendor ID", FIELD(LunEntry, vendor_id), Form::kText},
    {"product ID", FIELD(LunEntry, product_id), Form::kText},
    {"FCP size MB", FIELD(LunEntry, fcp_size_mb), Form::kNumber},
    {"unique ID", FIELD(LunEntry, unique_id), Form::kHex, Identity::kLunId},
    {"FCP unique ID length", FIELD(LunEntry, fcp_unique_id_length), Form::kNumber},
    {"NVMe revision", FIELD(LunEntry, nvme_revision), Form::kText},
    {"FCP revision", FIELD(LunEntry, fcp_revision), Form::kText},
    {"NVMe unique ID length", FIELD(LunEntry, nvme_unique_id_length), Form::kNumber},
    {"NVMe size MB", FIELD(LunEntry, nvme_size_mb), Form::kNumber},
};

constexpr Field kTargetEntry[] = {
    {"node name", FIELD(TargetEntry, node_name), Form::kName, Identity::kName},
    {"port name", FIELD(TargetEntry, port_name), Form::kName, Identity::kName},
    {"port ID", FIELD(TargetEntry, port_id), Form::kHex},
    {"target number", FIELD(TargetEntry, number), Form::kNumber},
    {"congestion notifications", FIELD(TargetEntry, congestion_notifications), Form::kNumber},
    {"link event type", FIELD(TargetEntry, link_event_type), Form::kNumber},
    {"link event threshold ms", FIELD(TargetEntry, link_event_threshold_ms), Form::kNumber},
    {"delivery reason", FIELD(TargetEntry, delivery_reason), Form::kNumber},
    {"peer congestion event type", FIELD(TargetEntry, peer_congestion_event_type), Form::kNumber},
    {"peer congestion event period ms", FIELD(TargetEntry, peer_congestion_event_period_ms), Form::kNumber},
    {"congestion state", FIELD(TargetEntry, congestion_state), Form::kNumber},
    {"link integrity events", FIELD(TargetEntry, link_integrity_events), Form::kNumber},
    {"virtual lane", FIELD(TargetEntry, virtual_lane), Form::kNumber},
    {"IO throttling", FIELD(TargetEntry, io_throttling), Form::kNumber},
    {"seconds since event", FIELD(TargetEntry, seconds_since_event), Form::kNumber},
    {"vendor ID", FIELD(TargetEntry, vendor_id), Form::kText},
    {"product ID", FIELD(TargetEntry, product_id), Form::kText},
    {"FCP revision", FIELD(TargetEntry, fcp_revision), Form::kText},
    {"state flags", FIELD(TargetEntry, state_flags), Form::kHex},
    {"LUN count", FIELD(TargetEntry, lun_count), Form::kNumber},
    {"product type", FIELD(TargetEntry, product_type), Form::kNumber},
    {"serial number", FIELD(TargetEntry, serial_number), Form::kText, Identity::kSerial},
    {"old port ID", FIELD(TargetEntry, old_port_id), Form::kNumber},
    {"old port name", FIELD(TargetEntry, old_port_name), Form::kName, Identity::kName},
    {"old remote type", FIELD(TargetEntry, old_remote_type), Form::kNumber},
    {"old secure mode", FIELD(TargetEntry, old_secure_mode), Form::kNumber},
    {"old session state", FIELD(TargetEntry, old_session_state), Form::kNumber},
    {"remote port ID", FIELD(TargetEntry, remote_port_id), Form::kNumber},
    {"remote flags", FIELD(TargetEntry, remote_flags), Form::kNumber},
    {"remote port name", FIELD(TargetEntry, remote_port_name), Form::kName, Identity::kName},
    {"remote session state", FIELD(TargetEntry, remote_session_state), Form::kNumber},
    {"NVMe revision", FIELD(TargetEntry, nvme_revision), Form::kText},
    {"controller ID", FIELD(TargetEntry, controller_id), Form::kNumber},
    {"NQN", FIELD(TargetEntry, nqn), Form::kText, Identity::kNqn},
};

constexpr Field kTargetPortStatistics[] = {
    {"link failure", FIELD(TargetPortStatistics, link_failure), Form::kNumber},
    {"loss of sync", FIELD(TargetPortStatistics, loss_of_sync), Form::kNumber},
    {"loss of signal", FIELD(TargetPortStatistics, loss_of_signal), Form::kNumber},
    {"primitive sequence error", FIELD(TargetPortStatistics, primitive_sequence_error), Form::kNumber},
    {"invalid transmission word", FIELD(TargetPortStatistics, invalid_transmission_word), Form::kNumber},
    {"invalid CRC", FIELD(TargetPortStatistics, invalid_crc), Form::kNumber},
    {"delivery failure unknown", FIELD(TargetPortStatistics, delivery_failure_unknown), Form::kNumber},
    {"delivery timeout", FIELD(TargetPortStatistics, delivery_timeout), Form::kNumber},
    {"delivery unable to route", FIELD(TargetPortStatistics, delivery_unable_to_route), Form::kNumber},
    {"delivery failure device specific", FIELD(TargetPortStatistics, delivery_failure_device_specific),
     Form::kNumber},
    {"peer congestion clear", FIELD(TargetPortStatistics, peer_congestion_clear), Form::kNumber},
    {"peer congestion lost credit", FIELD(TargetPortStatistics, peer_congestion_lost_credit), Form::kNumber},
    {"peer congestion credit stall", FIELD(TargetPortStatistics, peer_congestion_credit_stall),
     Form::kNumber},
    {"peer congestion oversubscription", FIELD(TargetPortStatistics, peer_congestion_oversubscription),
     Form::kNumber},
    {"peer congestion device specific", FIELD(TargetPortStatistics, peer_congestion_device_specific),
     Form::kNumber},
    {"link unknown event", FIELD(TargetPortStatistics, link_unknown_event), Form::kNumber},
    {"link device specific event", FIELD(TargetPortStatistics, link_device_specific_event), Form::kNumber},
};

constexpr Field kFlashComponentVersions[] = {
    {"PEP firmware", FIELD(FlashComponentVersions, pep_firmware), Form::kVersion},
    {"PEP softrom", FIELD(FlashComponentVersions, pep_softrom), Form::kVersion},
    {"PEP board config", FIELD(FlashComponentVersions, pep_board_config), Form::kVersion},
    {"preload firmware area", FIELD(FlashComponentVersions, preload_firmware_area), Form::kVersion},
    {"fc board config", FIELD(FlashComponentVersions, fc_board_config), Form::kVersion},
    {"MPI firmware", FIELD(FlashComponentVersions, mpi_firmware), Form::kVersion},
    {"MPI softrom", FIELD(FlashComponentVersions, mpi_softrom), Form::kVersion},
    {"PCIe serdes", FIELD(FlashComponentVersions, pcie_serdes), Form::kVersion},
};

constexpr Field kFlashMemoBlock[] = {
    {"signature", FIELD(FlashMemoBlock, signature), Form::kText},
    {"family firmware", FIELD(FlashMemoBlock, family_firmware), Form::kVersion},
    {"MBI version", FIELD(FlashMemoBlock, mbi_version), Form::kVersion},
    {"MBI build date", FIELD(FlashMemoBlock, mbi_build_date), Form::kText},
    {"tool ID", FIELD(FlashMemoBlock, tool_id), Form::kText},
    {"update year", FIELD(FlashMemoBlock, update_year), Form::kNumber},
    {"update month", FIELD(FlashMemoBlock, update_month), Form::kNumber},
    {"update day", FIELD(FlashMemoBlock, update_day), Form::kNumber},
    {"update hour", FIELD(FlashMemoBlock, update_hour), Form::kNumber},
    {"update minute", FIELD(FlashMemoBlock, update_minute), Form::kNumber},
    {"update second", FIELD(FlashMemoBlock, update_second), Form::kNumber},
    {"tool version", FIELD(FlashMemoBlock, tool_version), Form::kVersion},
};

constexpr Field kBoardTemperature[] = {
    {"celsius", FIELD(BoardTemperature, celsius), Form::kNumber},
};

constexpr Field kLockdownStatus[] = {
    {"config flag", FIELD(LockdownStatus, config_flag), Form::kNumber},
    {"firmware update flag", FIELD(LockdownStatus, firmware_update_flag), Form::kNumber},
    {"MPI flag", FIELD(LockdownStatus, mpi_flag), Form::kNumber},
    {"config status", FIELD(LockdownStatus, config_status), Form::kNumber},
    {"firmware update status", FIELD(LockdownStatus, firmware_update_status), Form::kNumber},
    {"MPI status", FIELD(LockdownStatus, mpi_status), Form::kNumber},
};

constexpr Field kHBAParamsInfo[] = {
    {"data rate", FIELD(HBAParamsInfo, data_rate), Form::kNumber},
    {"connection options", FIELD(HBAParamsInfo, connection_options), Form::kNumber},
    {"enable fc tape", FIELD(HBAParamsInfo, enable_fc_tape), Form::kNumber},
    {"max LUNs per target", FIELD(HBAParamsInfo, max_luns_per_target), Form::kNumber},
    {"enable hard loop ID", FIELD(HBAParamsInfo, enable_hard_loop_id), Form::kNumber},
    {"hard loop ID", FIELD(HBAParamsInfo, hard_loop_id), Form::kNumber},
    {"frame size", FIELD(HBAParamsInfo, frame_size), Form::kNumber},
    {"enable lip full login", FIELD(HBAParamsInfo, enable_lip_full_login), Form::kNumber},
    {"enable target reset", FIELD(HBAParamsInfo, enable_target_reset), Form::kNumber},
    {"loop reset delay", FIELD(HBAParamsInfo, loop_reset_delay), Form::kNumber},
    {"login retry count", FIELD(HBAParamsInfo, login_retry_count), Form::kNumber},
    {"port down retry count", FIELD(HBAParamsInfo, port_down_retry_count), Form::kNumber},
    {"execution throttle", FIELD(HBAParamsInfo, execution_throttle), Form::kNumber},
    {"operation mode", FIELD(HBAParamsInfo, operation_mode), Form::kNumber},
    {"interrupt delay timer", FIELD(HBAParamsInfo, interrupt_delay_timer), Form::kNumber},
    {"link down timeout", FIELD(HBAParamsInfo, link_down_timeout), Form::kNumber},
    {"disable BIOS", FIELD(HBAParamsInfo, disable_bios), Form::kNumber},
    {"enable selectable boot", FIELD(HBAParamsInfo, enable_selectable_boot), Form::kNumber},
    {"primary drive port name", FIELD(HBAParamsInfo, primary_drive.port_name), Form::kName, Identity::kName},
    {"primary drive LUN", FIELD(HBAParamsInfo, primary_drive.lun), Form::kNumber},
    {"enable selective login", FIELD(HBAParamsInfo, enable_selective_login), Form::kNumber},
    {"enable selective LUN", FIELD(HBAParamsInfo, enable_selective_lun), Form::kNumber},
    {"force world login", FIELD(HBAParamsInfo, force_world_login), Form::kNumber},
    {"receive out of order", FIELD(HBAParamsInfo, receive_out_of_order), Form::kNumber},
    {"alternate drive 1 port name", FIELD(HBAParamsInfo, alternate_drive_1.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 1 LUN", FIELD(HBAParamsInfo, alternate_drive_1.lun), Form::kNumber},
    {"alternate drive 2 port name", FIELD(HBAParamsInfo, alternate_drive_2.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 2 LUN", FIELD(HBAParamsInfo, alternate_drive_2.lun), Form::kNumber},
    {"alternate drive 3 port name", FIELD(HBAParamsInfo, alternate_drive_3.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 3 LUN", FIELD(HBAParamsInfo, alternate_drive_3.lun), Form::kNumber},
    {"enable lr", FIELD(HBAParamsInfo, enable_lr), Form::kNumber},
    {"enable fabric assign wwn", FIELD(HBAParamsInfo, enable_fabric_assign_wwn), Form::kNumber},
    {"enable fabric assign boot LUN", FIELD(HBAParamsInfo, enable_fabric_assign_boot_lun), Form::kNumber},
    {"disable SCM", FIELD(HBAParamsInfo, disable_scm), Form::kNumber},
    {"alternate drive 4 port name", FIELD(HBAParamsInfo, alternate_drive_4.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 4 LUN", FIELD(HBAParamsInfo, alternate_drive_4.lun), Form::kNumber},
    {"alternate drive 5 port name", FIELD(HBAParamsInfo, alternate_drive_5.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 5 LUN", FIELD(HBAParamsInfo, alternate_drive_5.lun), Form::kNumber},
    {"alternate drive 6 port name", FIELD(HBAParamsInfo, alternate_drive_6.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 6 LUN", FIELD(HBAParamsInfo, alternate_drive_6.lun), Form::kNumber},
    {"alternate drive 7 port name", FIELD(HBAParamsInfo, alternate_drive_7.port_name), Form::kName,
     Identity::kName},
    {"alternate drive 7 LUN", FIELD(HBAParamsInfo, alternate_drive_7.lun), Form::kNumber},
    {"enable virtual lane", FIELD(HBAParamsInfo, enable_virtual_lane), Form::kNumber},
};

constexpr Field kNVMeBootEntry[] = {
    {"port name", FIELD(NVMeBootEntry, port_name), Form::kName, Identity::kName},
    {"node name", FIELD(NVMeBootEntry, node_name), Form::kName, Identity::kName},
    {"namespace ID", FIELD(NVMeBootEntry, namespace_id), Form::kNumber},
    {"controller ID", FIELD(NVMeBootEntry, controller_id), Form::kNumber},
    {"enable", FIELD(NVMeBootEntry, enable), Form::kNumber},
    {"NQN", FIELD(NVMeBootEntry, nqn), Form::kText, Identity::kNqn},
};

constexpr Field kFWPrivateStats[] = {
    {"correctable FEC errors", FIELD(FWPrivateStats, correctable_fec_errors), Form::kNumber},
    {"uncorrectable FEC errors", FIELD(FWPrivateStats, uncorrectable_fec_errors), Form::kNumber},
};

constexpr Field kSCMRStatisticsEntry[] = {
    {"node name", FIELD(SCMRStatisticsEntry, node_name), Form::kName, Identity::kName},
    {"port name", FIELD(SCMRStatisticsEntry, port_name), Form::kName, Identity::kName},
    {"kind", FIELD(SCMRStatisticsEntry, kind), Form::kNumber},
    {"congestion alarms", FIELD(SCMRStatisticsEntry, congestion_alarms), Form::kNumber},
    {"congestion warnings", FIELD(SCMRStatisticsEntry, congestion_warnings), Form::kNumber},
    {"cleared congestion", FIELD(SCMRStatisticsEntry, cleared_congestion), Form::kNumber},
    {"throttled down", FIELD(SCMRStatisticsEntry, throttled_down), Form::kNumber},
    {"throttled up", FIELD(SCMRStatisticsEntry, throttled_up), Form::kNumber},
    {"returned busy", FIELD(SCMRStatisticsEntry, returned_busy), Form::kNumber},
    {"bottomed out", FIELD(SCMRStatisticsEntry, bottomed_out), Form::kNumber},
    {"link failure", FIELD(SCMRStatisticsEntry, link_failure), Form::kNumber},
    {"link unknown event", FIELD(SCMRStatisticsEntry, link_unknown_event), Form::kNumber},
    {"loss of sync", FIELD(SCMRStatisticsEntry, loss_of_sync), Form::kNumber},
    {"loss of signal", FIELD(SCMRStatisticsEntry, loss_of_signal), Form::kNumber},
    {"primitive sequence error", FIELD(SCMRStatisticsEntry, primitive_sequence_error), Form::kNumber},
    {"invalid transmission word", FIELD(SCMRStatisticsEntry, invalid_transmission_word), Form::kNumber},
    {"invalid CRC", FIELD(SCMRStatisticsEntry, invalid_crc), Form::kNumber},
    {"link device specific event", FIELD(SCMRStatisticsEntry, link_device_specific_event), Form::kNumber},
    {"delivery failure unknown", FIELD(SCMRStatisticsEntry, delivery_failure_unknown), Form::kNumber},
    {"delivery timeout", FIELD(SCMRStatisticsEntry, delivery_timeout), Form::kNumber},
    {"delivery unable to route", FIELD(SCMRStatisticsEntry, delivery_unable_to_route), Form::kNumber},
    {"delivery failure device specific", FIELD(SCMRStatisticsEntry, delivery_failure_device_specific),
     Form::kNumber},
    {"congestion clear", FIELD(SCMRStatisticsEntry, congestion_clear), Form::kNumber},
    {"congestion lost credit", FIELD(SCMRStatisticsEntry, congestion_lost_credit), Form::kNumber},
    {"congestion credit stall", FIELD(SCMRStatisticsEntry, congestion_credit_stall), Form::kNumber},
    {"congestion oversubscription", FIELD(SCMRStatisticsEntry, congestion_oversubscription), Form::kNumber},
    {"congestion device specific", FIELD(SCMRStatisticsEntry, congestion_device_specific), Form::kNumber},
    {"pun", FIELD(SCMRStatisticsEntry, pun), Form::kNumber},
    {"link uncorrectable FEC", FIELD(SCMRStatisticsEntry, link_uncorrectable_fec), Form::kNumber},
};

constexpr Field kSCMRProfile[] = {
    {"configuration status", FIELD(SCMRProfile, configuration_status), Form::kNumber},
    {"management", FIELD(SCMRProfile, management), Form::kNumber},
    {"activation", FIELD(SCMRProfile, activation), Form::kNumber},
};

constexpr Field kCreditRecovery[] = {
    {"status", FIELD(CreditRecoveryAnswer, status), Form::kNumber},
    {"configured", FIELD(CreditRecoveryAnswer, configured), Form::kNumber},
    {"state", FIELD(CreditRecoveryAnswer, state), Form::kNumber},
    {"negotiated", FIELD(CreditRecoveryAnswer, negotiated), Form::kNumber},
    {"reason", FIELD(CreditRecoveryAnswer, reason), Form::kText},
};

// The fields of every entry of an NVMe boot record, one entry after the other.
constexpr auto kNvmeBootRecord = [] {
  constexpr std::size_t kEntries = sizeof(NVMeBootRecord::entries) / sizeof(NVMeBootEntry);
  std::array<Field, kEntries * std::size(kNVMeBootEntry)> fields{};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    fields[i] = kNVMeBootEntry[i % std::size(kNVMeBootEntry)];
    const std::size_t entry =
        offsetof(NVMeBootRecord, entries) + i / std::size(kNVMeBootEntry) * sizeof(NVMeBootEntry);
    fields[i].offset = static_cast<std::uint16_t>(fields[i].offset + entry);
  }
  return fields;
}();

constexpr Field kSfpTexts[] = {
    {"vendor name", 20, 16, Form::kText}, {"part number", 40, 16, Form::kText},
    {"revision", 56, 4, Form::kText},     {"serial number", 68, 16, Form::kText, Identity::kSerial},
    {"date", 84, 8, Form::kText},
};
constexpr Field kQsfpTexts[] = {
    {"vendor name", 148, 16, Form::kText}, {"part number", 168, 16, Form::kText},
    {"revision", 184, 2, Form::kText},     {"serial number", 196, 16, Form::kText, Identity::kSerial},
    {"date", 212, 8, Form::kText},
};

// Ascending, none over another, and none past the end of the record.
template <class Record>
consteval bool AreInPlace(std::span<const Field> fields) {
  std::size_t end = 0;
  for (const Field& field : fields) {
    if (field.offset < end || field.size == 0) return false;
    if (field.form == Form::kNumber && field.size > 8) return false;
    end = std::size_t{field.offset} + field.size;
  }
  return end <= sizeof(Record);
}

}  // namespace

template <>
std::span<const Field> FieldsOf<AdapterList>() {
  static_assert(AreInPlace<AdapterList>(kAdapterList));
  return kAdapterList;
}
template <>
std::span<const Field> FieldsOf<PhyPortEntry>() {
  static_assert(AreInPlace<PhyPortEntry>(kPhyPortEntry));
  return kPhyPortEntry;
}
template <>
std::span<const Field> FieldsOf<AdapterEntry>() {
  static_assert(AreInPlace<AdapterEntry>(kAdapterEntry));
  return kAdapterEntry;
}
template <>
std::span<const Field> FieldsOf<FCProtocolEntry>() {
  static_assert(AreInPlace<FCProtocolEntry>(kFCProtocolEntry));
  return kFCProtocolEntry;
}
template <>
std::span<const Field> FieldsOf<LunEntry>() {
  static_assert(AreInPlace<LunEntry>(kLunEntry));
  return kLunEntry;
}
template <>
std::span<const Field> FieldsOf<TargetEntry>() {
  static_assert(AreInPlace<TargetEntry>(kTargetEntry));
  return kTargetEntry;
}
template <>
std::span<const Field> FieldsOf<TargetPortStatistics>() {
  static_assert(AreInPlace<TargetPortStatistics>(kTargetPortStatistics));
  return kTargetPortStatistics;
}
template <>
std::span<const Field> FieldsOf<FlashComponentVersions>() {
  static_assert(AreInPlace<FlashComponentVersions>(kFlashComponentVersions));
  return kFlashComponentVersions;
}
template <>
std::span<const Field> FieldsOf<FlashMemoBlock>() {
  static_assert(AreInPlace<FlashMemoBlock>(kFlashMemoBlock));
  return kFlashMemoBlock;
}
template <>
std::span<const Field> FieldsOf<BoardTemperature>() {
  static_assert(AreInPlace<BoardTemperature>(kBoardTemperature));
  return kBoardTemperature;
}
template <>
std::span<const Field> FieldsOf<LockdownStatus>() {
  static_assert(AreInPlace<LockdownStatus>(kLockdownStatus));
  return kLockdownStatus;
}
template <>
std::span<const Field> FieldsOf<HBAParamsInfo>() {
  static_assert(AreInPlace<HBAParamsInfo>(kHBAParamsInfo));
  return kHBAParamsInfo;
}
template <>
std::span<const Field> FieldsOf<NVMeBootRecord>() {
  static_assert(AreInPlace<NVMeBootRecord>(kNvmeBootRecord));
  return kNvmeBootRecord;
}
template <>
std::span<const Field> FieldsOf<FWPrivateStats>() {
  static_assert(AreInPlace<FWPrivateStats>(kFWPrivateStats));
  return kFWPrivateStats;
}
template <>
std::span<const Field> FieldsOf<SCMRStatisticsEntry>() {
  static_assert(AreInPlace<SCMRStatisticsEntry>(kSCMRStatisticsEntry));
  return kSCMRStatisticsEntry;
}
template <>
std::span<const Field> FieldsOf<SCMRProfile>() {
  static_assert(AreInPlace<SCMRProfile>(kSCMRProfile));
  return kSCMRProfile;
}
template <>
std::span<const Field> FieldsOf<CreditRecoveryAnswer>() {
  static_assert(AreInPlace<CreditRecoveryAnswer>(kCreditRecovery));
  return kCreditRecovery;
}
// The parameters come first; what follows them has no known fields.
template <>
std::span<const Field> FieldsOf<HbaParamsAnswer>() {
  static_assert(offsetof(HbaParamsAnswer, info) == 0);
  return kHBAParamsInfo;
}
template <>
std::span<const Field> FieldsOf<ProtocolList>() {
  return {};
}
template <>
std::span<const Field> FieldsOf<PortList>() {
  return {};
}
template <>
std::span<const Field> FieldsOf<SfpImage>() {
  return {};
}

std::span<const Field> FieldsOfModule(const SfpImage& image) {
  static_assert(AreInPlace<SfpImage>(kSfpTexts) && AreInPlace<SfpImage>(kQsfpTexts));
  // Identifiers of SFF-8024: QSFP, QSFP+, QSFP28, CXP2.
  const std::uint8_t identifier = image.bytes[0];
  const bool is_qsfp = identifier == 0x0c || identifier == 0x0d || identifier == 0x11 || identifier == 0x12;
  return is_qsfp ? kQsfpTexts : kSfpTexts;
}

}  // namespace recording
