#include "tools/lab/diff/record_fields.h"

#include "recording/recording.h"

namespace diff {
namespace {

using view::CodeWord;

// An address in a record, which leads nowhere in a recording.
consteval Field Address(std::size_t offset) {
  return Skipped(offset, sizeof(void*));
}

constexpr CodeWord kOnOff[] = {{0, "off"}, {1, "on"}};
constexpr CodeWord kAdapterTypes[] = {{2, "Fibre Channel"}, {6, "FCoE"}};
constexpr CodeWord kInterfaceTypes[] = {{1, "physical port"}, {3, "virtual port"}};
constexpr CodeWord kProtocols[] = {{0, "FC"}, {1, "FCoE"}};
constexpr CodeWord kConnections[] = {{1, "point to point"}, {2, "loop"}};
constexpr CodeWord kBootCode[] = {
    {0, "none"}, {kUefiImage, "UEFI"}, {kBiosImage, "BIOS"}, {kUefiImage | kBiosImage, "BIOS and UEFI"}};
constexpr CodeWord kLinkFlags[] = {{0, "off"}, {kFecInUse, "on"}};
constexpr CodeWord kLinkEvents[] = {
    {0, "unknown"},
    {1, "link failure"},
    {2, "loss of sync"},
    {3, "loss of signal"},
    {4, "primitive sequence protocol error"},
    {5, "invalid transmission word"},
    {6, "invalid CRC"},
    {15, "device specific"},
};
constexpr CodeWord kDeliveryReasons[] = {
    {0, "unknown"}, {1, "timeout"}, {2, "unable to route"}, {15, "device specific"}};
constexpr CodeWord kCongestionEvents[] = {
    {0, "clear"}, {1, "lost credit"}, {2, "credit stall"}, {3, "oversubscription"}, {15, "device specific"}};
constexpr CodeWord kPortLanes[] = {{0, "disabled"}, {1, "operational"}, {2, "non-operational"}};
constexpr CodeWord kTargetLanes[] = {{0, "none"}, {1, "slow"}, {2, "normal"}, {3, "fast"}};
constexpr CodeWord kThrottling[] = {{0, "disabled"}, {1, "none"}, {2, "active"}};
constexpr CodeWord kLockdownReads[] = {
    {0, "read"}, {0x76, "unsupported driver"}, {0x86, "unsupported firmware"}};
constexpr CodeWord kConnectionOptions[] = {{kLoopOnly, "loop only"},
                                           {kPointToPointOnly, "point to point only"},
                                           {kLoopPreferred, "loop preferred, otherwise point to point"}};
constexpr CodeWord kOperationModes[] = {
    {kInterruptPerCompletion, "interrupt for every I/O completion"},
    {kInterruptOnTimer, "interrupt when the delay timer expires"},
    {kInterruptOnTimerOrIdle, "interrupt when the delay timer expires or no I/O is active"},
};
constexpr CodeWord kRecoveryStates[] = {{0, "offline"}, {1, "online"}};
constexpr CodeWord kElementKinds[] = {{0x80, "port"}};
constexpr CodeWord kConfigured[] = {{0, "configured"}, {1, "not configured"}};
constexpr CodeWord kManagement[] = {{0, "driver settings"}, {1, "NVRAM"}};
constexpr CodeWord kActivations[] = {
    {0, "monitor only"}, {1, "conservative"}, {2, "moderate"}, {3, "aggressive"}, {4, "defensive"}};

constexpr Field kAdapterList[] = {
    {"Adapter count", offsetof(AdapterList, count), sizeof(AdapterList::count), Form::kNumber},
    Address(offsetof(AdapterList, first)),
};

constexpr Field kAdapter[] = {
    {"Serial number", offsetof(AdapterEntry, serial_number), sizeof(AdapterEntry::serial_number),
     Form::kText},
    {"Adapter type", offsetof(AdapterEntry, type), sizeof(AdapterEntry::type), Form::kCode, kAdapterTypes},
    {"Manufacturer", offsetof(AdapterEntry, manufacturer), sizeof(AdapterEntry::manufacturer), Form::kText},
    {"Vendor ID", offsetof(AdapterEntry, vendor_id), sizeof(AdapterEntry::vendor_id), Form::kHex},
    {"Subsystem vendor ID", offsetof(AdapterEntry, subsystem_vendor_id),
     sizeof(AdapterEntry::subsystem_vendor_id), Form::kHex},
    {"Subsystem device ID", offsetof(AdapterEntry, subsystem_device_id),
     sizeof(AdapterEntry::subsystem_device_id), Form::kHex},
    {"PCI bus", offsetof(AdapterEntry, bus_id), sizeof(AdapterEntry::bus_id), Form::kBus},
    {"Model", offsetof(AdapterEntry, model), sizeof(AdapterEntry::model), Form::kText},
    {"Flash BIOS version", offsetof(AdapterEntry, flash_bios_version),
     sizeof(AdapterEntry::flash_bios_version), Form::kText},
    {"Flash FCode version", offsetof(AdapterEntry, flash_fcode_version),
     sizeof(AdapterEntry::flash_fcode_version), Form::kText},
    {"Flash EFI version", offsetof(AdapterEntry, flash_efi_version), sizeof(AdapterEntry::flash_efi_version),
     Form::kText},
    {"Flash firmware version", offsetof(AdapterEntry, flash_firmware_version),
     sizeof(AdapterEntry::flash_firmware_version), Form::kText},
    {"Multiboot version", offsetof(AdapterEntry, multiboot_version), sizeof(AdapterEntry::multiboot_version),
     Form::kText},
    {"Chip revision", offsetof(AdapterEntry, chip_revision), sizeof(AdapterEntry::chip_revision),
     Form::kNumber},
    Address(offsetof(AdapterEntry, ports)),
    Address(offsetof(AdapterEntry, next)),
};

constexpr Field kPhyPort[] = {
    {"Port number", offsetof(PhyPortEntry, number), sizeof(PhyPortEntry::number), Form::kNumber},
    Address(offsetof(PhyPortEntry, protocols)),
    Address(offsetof(PhyPortEntry, next)),
};

constexpr Field kPort[] = {
    {"Link", offsetof(FCProtocolEntry, port_state), sizeof(FCProtocolEntry::port_state), Form::kLink,
     view::kLinkStates},
    {"Link speed", offsetof(FCProtocolEntry, port_speed), sizeof(FCProtocolEntry::port_speed), Form::kSpeed},
    {"Forward error correction in use", offsetof(FCProtocolEntry, link_flags),
     sizeof(FCProtocolEntry::link_flags), Form::kCode, kLinkFlags},
    {"Port ID", offsetof(FCProtocolEntry, port_id), sizeof(FCProtocolEntry::port_id), Form::kOctets},
    {"Principal fabric name", offsetof(FCProtocolEntry, principal_fabric_name),
     sizeof(FCProtocolEntry::principal_fabric_name), Form::kName},
    {"Adjacent fabric name", offsetof(FCProtocolEntry, adjacent_fabric_name),
     sizeof(FCProtocolEntry::adjacent_fabric_name), Form::kName},
    {"Connection mode", offsetof(FCProtocolEntry, connection_mode), sizeof(FCProtocolEntry::connection_mode),
     Form::kCode, kConnections},
    {"Port type", offsetof(FCProtocolEntry, port_type), sizeof(FCProtocolEntry::port_type), Form::kNumber},
    {"Supported speeds", offsetof(FCProtocolEntry, supported_speeds),
     sizeof(FCProtocolEntry::supported_speeds), Form::kSpeedMask},
    {"Port name", offsetof(FCProtocolEntry, port_name), sizeof(FCProtocolEntry::port_name), Form::kName},
    {"Node name", offsetof(FCProtocolEntry, node_name), sizeof(FCProtocolEntry::node_name), Form::kName},
    {"Interface type", offsetof(FCProtocolEntry, interface_type), sizeof(FCProtocolEntry::interface_type),
     Form::kCode, kInterfaceTypes},
    {"Protocol", offsetof(FCProtocolEntry, protocol_type), sizeof(FCProtocolEntry::protocol_type),
     Form::kCode, kProtocols},
    {"PCI device ID", offsetof(FCProtocolEntry, pci.device_id), sizeof(FCProtocolEntry::pci.device_id),
     Form::kHex},
    {"PCI vendor ID", offsetof(FCProtocolEntry, pci.vendor_id), sizeof(FCProtocolEntry::pci.vendor_id),
     Form::kHex},
    {"PCI subsystem vendor ID", offsetof(FCProtocolEntry, pci.subsystem_vendor_id),
     sizeof(FCProtocolEntry::pci.subsystem_vendor_id), Form::kHex},
    {"PCI subsystem device ID", offsetof(FCProtocolEntry, pci.subsystem_device_id),
     sizeof(FCProtocolEntry::pci.subsystem_device_id), Form::kHex},
    {"PCI link capability", offsetof(FCProtocolEntry, pci.link_capability),
     sizeof(FCProtocolEntry::pci.link_capability), Form::kPciLink},
    {"PCI link", offsetof(FCProtocolEntry, pci.link_status), sizeof(FCProtocolEntry::pci.link_status),
     Form::kPciLink},
    {"PCI bus number", offsetof(FCProtocolEntry, pci_bus), sizeof(FCProtocolEntry::pci_bus), Form::kHex},
    {"PCI device number", offsetof(FCProtocolEntry, pci_device), sizeof(FCProtocolEntry::pci_device),
     Form::kHex},
    {"PCI function number", offsetof(FCProtocolEntry, pci_function), sizeof(FCProtocolEntry::pci_function),
     Form::kHex},
    {"Driver version", offsetof(FCProtocolEntry, driver_version), sizeof(FCProtocolEntry::driver_version),
     Form::kText},
    {"Driver capabilities", offsetof(FCProtocolEntry, capabilities), sizeof(FCProtocolEntry::capabilities),
     Form::kHex},
    {"Driver flags", offsetof(FCProtocolEntry, driver_flags), sizeof(FCProtocolEntry::driver_flags),
     Form::kHex},
    {"Maintenance mode", offsetof(FCProtocolEntry, port_flags), sizeof(FCProtocolEntry::port_flags),
     Form::kCode, kOnOff},
    {"Running firmware version", offsetof(FCProtocolEntry, running_firmware_version),
     sizeof(FCProtocolEntry::running_firmware_version), Form::kText},
    {"Running MPI version", offsetof(FCProtocolEntry, running_mpi_version),
     sizeof(FCProtocolEntry::running_mpi_version), Form::kVersion},
    {"Running PEP version", offsetof(FCProtocolEntry, running_pep_version),
     sizeof(FCProtocolEntry::running_pep_version), Form::kVersion},
    {"Boot code", offsetof(FCProtocolEntry, rom_flags), sizeof(FCProtocolEntry::rom_flags), Form::kCode,
     kBootCode},
    {"Port flash BIOS version", offsetof(FCProtocolEntry, flash_bios_version),
     sizeof(FCProtocolEntry::flash_bios_version), Form::kText},
    {"Port flash firmware version", offsetof(FCProtocolEntry, flash_firmware_version),
     sizeof(FCProtocolEntry::flash_firmware_version), Form::kVersion},
    {"Port flash EFI version", offsetof(FCProtocolEntry, flash_efi_version),
     sizeof(FCProtocolEntry::flash_efi_version), Form::kShortVersion},
    {"Port flash FCode version", offsetof(FCProtocolEntry, flash_fcode_version),
     sizeof(FCProtocolEntry::flash_fcode_version), Form::kShortVersion},
    {"Congestion state", offsetof(FCProtocolEntry, congestion_state),
     sizeof(FCProtocolEntry::congestion_state), Form::kCode, view::kCongestionStates},
    {"Congestion severity", offsetof(FCProtocolEntry, congestion_severity),
     sizeof(FCProtocolEntry::congestion_severity), Form::kCode, view::kSeverities},
    {"Congestion notifications", offsetof(FCProtocolEntry, congestion_notifications),
     sizeof(FCProtocolEntry::congestion_notifications), Form::kHex},
    {"Link event", offsetof(FCProtocolEntry, link_event_type), sizeof(FCProtocolEntry::link_event_type),
     Form::kCode, kLinkEvents},
    {"Link event threshold in milliseconds", offsetof(FCProtocolEntry, link_event_threshold_ms),
     sizeof(FCProtocolEntry::link_event_threshold_ms), Form::kNumber},
    {"Delivery failure reason", offsetof(FCProtocolEntry, delivery_reason),
     sizeof(FCProtocolEntry::delivery_reason), Form::kCode, kDeliveryReasons},
    {"Congestion event", offsetof(FCProtocolEntry, congestion_event_type),
     sizeof(FCProtocolEntry::congestion_event_type), Form::kCode, kCongestionEvents},
    {"Congestion event period in milliseconds", offsetof(FCProtocolEntry, congestion_event_period_ms),
     sizeof(FCProtocolEntry::congestion_event_period_ms), Form::kNumber},
    {"Fabric connection flags", offsetof(FCProtocolEntry, fabric_connection_flags),
     sizeof(FCProtocolEntry::fabric_connection_flags), Form::kHex},
    {"Virtual lane", offsetof(FCProtocolEntry, virtual_lane), sizeof(FCProtocolEntry::virtual_lane),
     Form::kCode, kPortLanes},
    {"I/O throttling", offsetof(FCProtocolEntry, io_throttling), sizeof(FCProtocolEntry::io_throttling),
     Form::kCode, kThrottling},
    {"Link integrity event count", offsetof(FCProtocolEntry, link_integrity_events),
     sizeof(FCProtocolEntry::link_integrity_events), Form::kCounter},
    {"Delivery notification event count", offsetof(FCProtocolEntry, delivery_notification_events),
     sizeof(FCProtocolEntry::delivery_notification_events), Form::kCounter},
    {"Controller error count", offsetof(FCProtocolEntry, driver_counters) + 0 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Device error count", offsetof(FCProtocolEntry, driver_counters) + 1 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"I/O count", offsetof(FCProtocolEntry, driver_counters) + 2 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Megabytes count", offsetof(FCProtocolEntry, driver_counters) + 3 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"LIP reset count", offsetof(FCProtocolEntry, driver_counters) + 4 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Interrupt count", offsetof(FCProtocolEntry, driver_counters) + 5 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Link failure count", offsetof(FCProtocolEntry, firmware_counters) + 0 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Loss of sync count", offsetof(FCProtocolEntry, firmware_counters) + 1 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Loss of signal count", offsetof(FCProtocolEntry, firmware_counters) + 2 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Primitive sequence protocol error count",
     offsetof(FCProtocolEntry, firmware_counters) + 3 * sizeof(std::uint32_t), sizeof(std::uint32_t),
     Form::kCounter},
    {"Invalid transmission word count",
     offsetof(FCProtocolEntry, firmware_counters) + 4 * sizeof(std::uint32_t), sizeof(std::uint32_t),
     Form::kCounter},
    {"Invalid CRC count", offsetof(FCProtocolEntry, firmware_counters) + 5 * sizeof(std::uint32_t),
     sizeof(std::uint32_t), Form::kCounter},
    {"Congestion alarm count", offsetof(FCProtocolEntry, congestion_alarms),
     sizeof(FCProtocolEntry::congestion_alarms), Form::kCounter},
    {"Congestion warning count", offsetof(FCProtocolEntry, congestion_warnings),
     sizeof(FCProtocolEntry::congestion_warnings), Form::kCounter},
    {"Target count", offsetof(FCProtocolEntry, target_count), sizeof(FCProtocolEntry::target_count),
     Form::kNumber},
    {"Host ID", offsetof(FCProtocolEntry, host_id), sizeof(FCProtocolEntry::host_id), Form::kOctets},
    {"Host NQN", offsetof(FCProtocolEntry, host_nqn), sizeof(FCProtocolEntry::host_nqn), Form::kText},
    Skipped(offsetof(FCProtocolEntry, handle), sizeof(FCProtocolEntry::handle)),
    Skipped(offsetof(FCProtocolEntry, seconds_since_event), sizeof(FCProtocolEntry::seconds_since_event)),
    Address(offsetof(FCProtocolEntry, first_target)),
    Address(offsetof(FCProtocolEntry, next)),
};

constexpr Field kTarget[] = {
    {"State", offsetof(TargetEntry, state_flags), sizeof(TargetEntry::state_flags), Form::kTargetState},
    {"Port ID", offsetof(TargetEntry, port_id), sizeof(TargetEntry::port_id), Form::kOctets},
    {"Target number", offsetof(TargetEntry, number), sizeof(TargetEntry::number), Form::kNumber},
    {"Port name", offsetof(TargetEntry, port_name), sizeof(TargetEntry::port_name), Form::kName},
    {"Node name", offsetof(TargetEntry, node_name), sizeof(TargetEntry::node_name), Form::kName},
    {"Vendor", offsetof(TargetEntry, vendor_id), sizeof(TargetEntry::vendor_id), Form::kText},
    {"Product", offsetof(TargetEntry, product_id), sizeof(TargetEntry::product_id), Form::kText},
    {"Product revision", offsetof(TargetEntry, fcp_revision), sizeof(TargetEntry::fcp_revision), Form::kText},
    {"NVMe product revision", offsetof(TargetEntry, nvme_revision), sizeof(TargetEntry::nvme_revision),
     Form::kText},
    {"Product type", offsetof(TargetEntry, product_type), sizeof(TargetEntry::product_type), Form::kCode,
     view::kProductTypes},
    {"Serial number", offsetof(TargetEntry, serial_number), sizeof(TargetEntry::serial_number), Form::kText},
    {"NQN", offsetof(TargetEntry, nqn), sizeof(TargetEntry::nqn), Form::kText},
    {"Controller ID", offsetof(TargetEntry, controller_id), sizeof(TargetEntry::controller_id), Form::kHex},
    {"LUN count", offsetof(TargetEntry, lun_count), sizeof(TargetEntry::lun_count), Form::kNumber},
    {"Congestion state", offsetof(TargetEntry, congestion_state), sizeof(TargetEntry::congestion_state),
     Form::kCode, view::kCongestionStates},
    {"Congestion notifications", offsetof(TargetEntry, congestion_notifications),
     sizeof(TargetEntry::congestion_notifications), Form::kHex},
    {"Link event", offsetof(TargetEntry, link_event_type), sizeof(TargetEntry::link_event_type), Form::kCode,
     kLinkEvents},
    {"Link event threshold in milliseconds", offsetof(TargetEntry, link_event_threshold_ms),
     sizeof(TargetEntry::link_event_threshold_ms), Form::kNumber},
    {"Delivery failure reason", offsetof(TargetEntry, delivery_reason), sizeof(TargetEntry::delivery_reason),
     Form::kCode, kDeliveryReasons},
    {"Peer congestion event", offsetof(TargetEntry, peer_congestion_event_type),
     sizeof(TargetEntry::peer_congestion_event_type), Form::kCode, kCongestionEvents},
    {"Peer congestion event period in milliseconds", offsetof(TargetEntry, peer_congestion_event_period_ms),
     sizeof(TargetEntry::peer_congestion_event_period_ms), Form::kNumber},
    {"Link integrity event count", offsetof(TargetEntry, link_integrity_events),
     sizeof(TargetEntry::link_integrity_events), Form::kCounter},
    {"Virtual lane", offsetof(TargetEntry, virtual_lane), sizeof(TargetEntry::virtual_lane), Form::kCode,
     kTargetLanes},
    {"I/O throttling", offsetof(TargetEntry, io_throttling), sizeof(TargetEntry::io_throttling), Form::kCode,
     kThrottling},
    {"Older record: port ID", offsetof(TargetEntry, old_port_id), sizeof(TargetEntry::old_port_id),
     Form::kHex},
    {"Older record: port name", offsetof(TargetEntry, old_port_name), sizeof(TargetEntry::old_port_name),
     Form::kName},
    {"Older record: remote type", offsetof(TargetEntry, old_remote_type),
     sizeof(TargetEntry::old_remote_type), Form::kNumber},
    {"Older record: secure mode", offsetof(TargetEntry, old_secure_mode),
     sizeof(TargetEntry::old_secure_mode), Form::kNumber},
    {"Older record: session state", offsetof(TargetEntry, old_session_state),
     sizeof(TargetEntry::old_session_state), Form::kNumber},
    {"Remote port ID", offsetof(TargetEntry, remote_port_id), sizeof(TargetEntry::remote_port_id),
     Form::kHex},
    {"Remote port flags", offsetof(TargetEntry, remote_flags), sizeof(TargetEntry::remote_flags), Form::kHex},
    {"Remote port name", offsetof(TargetEntry, remote_port_name), sizeof(TargetEntry::remote_port_name),
     Form::kName},
    {"Remote session state", offsetof(TargetEntry, remote_session_state),
     sizeof(TargetEntry::remote_session_state), Form::kNumber},
    Skipped(offsetof(TargetEntry, seconds_since_event), sizeof(TargetEntry::seconds_since_event)),
    Address(offsetof(TargetEntry, first_lun)),
    Address(offsetof(TargetEntry, next)),
};

constexpr Field kLun[] = {
    {"Number", offsetof(LunEntry, number), sizeof(LunEntry::number), Form::kNumber},
    {"Size", offsetof(LunEntry, fcp_size_mb), sizeof(LunEntry::fcp_size_mb), Form::kMegabytes},
    {"Namespace size", offsetof(LunEntry, nvme_size_mb), sizeof(LunEntry::nvme_size_mb), Form::kMegabytes},
    {"Vendor", offsetof(LunEntry, vendor_id), sizeof(LunEntry::vendor_id), Form::kText},
    {"Product", offsetof(LunEntry, product_id), sizeof(LunEntry::product_id), Form::kText},
    {"Product revision", offsetof(LunEntry, fcp_revision), sizeof(LunEntry::fcp_revision), Form::kText},
    {"NVMe product revision", offsetof(LunEntry, nvme_revision), sizeof(LunEntry::nvme_revision),
     Form::kText},
    {"Unique ID", offsetof(LunEntry, unique_id), sizeof(LunEntry::unique_id), Form::kOctets},
    {"Unique ID length", offsetof(LunEntry, fcp_unique_id_length), sizeof(LunEntry::fcp_unique_id_length),
     Form::kNumber},
    {"Namespace unique ID length", offsetof(LunEntry, nvme_unique_id_length),
     sizeof(LunEntry::nvme_unique_id_length), Form::kNumber},
    Address(offsetof(LunEntry, next)),
};

constexpr Field kTargetStatistics[] = {
    {"Link failure count", offsetof(TargetPortStatistics, link_failure),
     sizeof(TargetPortStatistics::link_failure), Form::kCounter},
    {"Loss of sync count", offsetof(TargetPortStatistics, loss_of_sync),
     sizeof(TargetPortStatistics::loss_of_sync), Form::kCounter},
    {"Loss of signal count", offsetof(TargetPortStatistics, loss_of_signal),
     sizeof(TargetPortStatistics::loss_of_signal), Form::kCounter},
    {"Primitive sequence error count", offsetof(TargetPortStatistics, primitive_sequence_error),
     sizeof(TargetPortStatistics::primitive_sequence_error), Form::kCounter},
    {"Invalid transmission word count", offsetof(TargetPortStatistics, invalid_transmission_word),
     sizeof(TargetPortStatistics::invalid_transmission_word), Form::kCounter},
    {"Invalid CRC count", offsetof(TargetPortStatistics, invalid_crc),
     sizeof(TargetPortStatistics::invalid_crc), Form::kCounter},
    {"Delivery failure unknown count", offsetof(TargetPortStatistics, delivery_failure_unknown),
     sizeof(TargetPortStatistics::delivery_failure_unknown), Form::kCounter},
    {"Delivery timeout count", offsetof(TargetPortStatistics, delivery_timeout),
     sizeof(TargetPortStatistics::delivery_timeout), Form::kCounter},
    {"Delivery unable to route count", offsetof(TargetPortStatistics, delivery_unable_to_route),
     sizeof(TargetPortStatistics::delivery_unable_to_route), Form::kCounter},
    {"Delivery failure device specific count",
     offsetof(TargetPortStatistics, delivery_failure_device_specific),
     sizeof(TargetPortStatistics::delivery_failure_device_specific), Form::kCounter},
    {"Peer congestion clear count", offsetof(TargetPortStatistics, peer_congestion_clear),
     sizeof(TargetPortStatistics::peer_congestion_clear), Form::kCounter},
    {"Peer congestion lost credit count", offsetof(TargetPortStatistics, peer_congestion_lost_credit),
     sizeof(TargetPortStatistics::peer_congestion_lost_credit), Form::kCounter},
    {"Peer congestion credit stall count", offsetof(TargetPortStatistics, peer_congestion_credit_stall),
     sizeof(TargetPortStatistics::peer_congestion_credit_stall), Form::kCounter},
    {"Peer congestion oversubscription count",
     offsetof(TargetPortStatistics, peer_congestion_oversubscription),
     sizeof(TargetPortStatistics::peer_congestion_oversubscription), Form::kCounter},
    {"Peer congestion device specific count", offsetof(TargetPortStatistics, peer_congestion_device_specific),
     sizeof(TargetPortStatistics::peer_congestion_device_specific), Form::kCounter},
    {"Link unknown event count", offsetof(TargetPortStatistics, link_unknown_event),
     sizeof(TargetPortStatistics::link_unknown_event), Form::kCounter},
    {"Link device specific event count", offsetof(TargetPortStatistics, link_device_specific_event),
     sizeof(TargetPortStatistics::link_device_specific_event), Form::kCounter},
};

constexpr Field kFlashVersion[] = {
    {"Flash PEP firmware version", offsetof(FlashComponentVersions, pep_firmware),
     sizeof(FlashComponentVersions::pep_firmware), Form::kVersion},
    {"Flash PEP SoftROM version", offsetof(FlashComponentVersions, pep_softrom),
     sizeof(FlashComponentVersions::pep_softrom), Form::kVersion},
    {"Flash PEP board config version", offsetof(FlashComponentVersions, pep_board_config),
     sizeof(FlashComponentVersions::pep_board_config), Form::kVersion},
    {"Flash preload firmware area version", offsetof(FlashComponentVersions, preload_firmware_area),
     sizeof(FlashComponentVersions::preload_firmware_area), Form::kVersion},
    {"Flash FC board config version", offsetof(FlashComponentVersions, fc_board_config),
     sizeof(FlashComponentVersions::fc_board_config), Form::kVersion},
    {"Flash MPI firmware version", offsetof(FlashComponentVersions, mpi_firmware),
     sizeof(FlashComponentVersions::mpi_firmware), Form::kVersion},
    {"Flash MPI SoftROM version", offsetof(FlashComponentVersions, mpi_softrom),
     sizeof(FlashComponentVersions::mpi_softrom), Form::kVersion},
    {"Flash PCIe Serdes version", offsetof(FlashComponentVersions, pcie_serdes),
     sizeof(FlashComponentVersions::pcie_serdes), Form::kVersion},
};

constexpr Field kMemoBlock[] = {
    {"Memo block signature", offsetof(FlashMemoBlock, signature), sizeof(FlashMemoBlock::signature),
     Form::kText},
    {"Memo block family firmware version", offsetof(FlashMemoBlock, family_firmware),
     sizeof(FlashMemoBlock::family_firmware), Form::kVersion},
    {"Memo block MBI version", offsetof(FlashMemoBlock, mbi_version), sizeof(FlashMemoBlock::mbi_version),
     Form::kVersion},
    {"MBI build date", offsetof(FlashMemoBlock, mbi_build_date), sizeof(FlashMemoBlock::mbi_build_date),
     Form::kText},
    {"Flash update tool", offsetof(FlashMemoBlock, tool_id), sizeof(FlashMemoBlock::tool_id), Form::kText},
    {"Flash update year", offsetof(FlashMemoBlock, update_year), sizeof(FlashMemoBlock::update_year),
     Form::kNumber},
    {"Flash update month", offsetof(FlashMemoBlock, update_month), sizeof(FlashMemoBlock::update_month),
     Form::kNumber},
    {"Flash update day", offsetof(FlashMemoBlock, update_day), sizeof(FlashMemoBlock::update_day),
     Form::kNumber},
    {"Flash update hour", offsetof(FlashMemoBlock, update_hour), sizeof(FlashMemoBlock::update_hour),
     Form::kNumber},
    {"Flash update minute", offsetof(FlashMemoBlock, update_minute), sizeof(FlashMemoBlock::update_minute),
     Form::kNumber},
    {"Flash update second", offsetof(FlashMemoBlock, update_second), sizeof(FlashMemoBlock::update_second),
     Form::kNumber},
    {"Flash update tool version", offsetof(FlashMemoBlock, tool_version),
     sizeof(FlashMemoBlock::tool_version), Form::kOctets},
};

constexpr Field kLockdown[] = {
    {"Config lockdown", offsetof(LockdownStatus, config_flag), sizeof(LockdownStatus::config_flag),
     Form::kFlag},
    {"Firmware update lockdown", offsetof(LockdownStatus, firmware_update_flag),
     sizeof(LockdownStatus::firmware_update_flag), Form::kFlag},
    {"MPI lockdown", offsetof(LockdownStatus, mpi_flag), sizeof(LockdownStatus::mpi_flag), Form::kFlag},
    {"Config lockdown status", offsetof(LockdownStatus, config_status), sizeof(LockdownStatus::config_status),
     Form::kCode, kLockdownReads},
    {"Firmware update lockdown status", offsetof(LockdownStatus, firmware_update_status),
     sizeof(LockdownStatus::firmware_update_status), Form::kCode, kLockdownReads},
    {"MPI lockdown status", offsetof(LockdownStatus, mpi_status), sizeof(LockdownStatus::mpi_status),
     Form::kCode, kLockdownReads},
};

constexpr Field kParameter[] = {
    {"Connection options", offsetof(HBAParamsInfo, connection_options),
     sizeof(HBAParamsInfo::connection_options), Form::kCode, kConnectionOptions},
    {"Data rate", offsetof(HBAParamsInfo, data_rate), sizeof(HBAParamsInfo::data_rate), Form::kDataRate},
    {"Operation mode", offsetof(HBAParamsInfo, operation_mode), sizeof(HBAParamsInfo::operation_mode),
     Form::kCode, kOperationModes},
    {"Frame size", offsetof(HBAParamsInfo, frame_size), sizeof(HBAParamsInfo::frame_size), Form::kNumber},
    {"Enable hard loop ID", offsetof(HBAParamsInfo, enable_hard_loop_id),
     sizeof(HBAParamsInfo::enable_hard_loop_id), Form::kFlag},
    {"Hard loop ID", offsetof(HBAParamsInfo, hard_loop_id), sizeof(HBAParamsInfo::hard_loop_id),
     Form::kNumber},
    {"Loop reset delay in seconds", offsetof(HBAParamsInfo, loop_reset_delay),
     sizeof(HBAParamsInfo::loop_reset_delay), Form::kNumber},
    {"Interrupt delay timer in 100 us", offsetof(HBAParamsInfo, interrupt_delay_timer),
     sizeof(HBAParamsInfo::interrupt_delay_timer), Form::kNumber},
    {"Execution throttle", offsetof(HBAParamsInfo, execution_throttle),
     sizeof(HBAParamsInfo::execution_throttle), Form::kNumber},
    {"Login retry count", offsetof(HBAParamsInfo, login_retry_count),
     sizeof(HBAParamsInfo::login_retry_count), Form::kNumber},
    {"Port down retry count", offsetof(HBAParamsInfo, port_down_retry_count),
     sizeof(HBAParamsInfo::port_down_retry_count), Form::kNumber},
    {"Link down timeout in seconds", offsetof(HBAParamsInfo, link_down_timeout),
     sizeof(HBAParamsInfo::link_down_timeout), Form::kNumber},
    {"LUNs per target", offsetof(HBAParamsInfo, max_luns_per_target),
     sizeof(HBAParamsInfo::max_luns_per_target), Form::kNumber},
    {"Enable LR", offsetof(HBAParamsInfo, enable_lr), sizeof(HBAParamsInfo::enable_lr), Form::kFlag},
    {"Enable host HBA BIOS", offsetof(HBAParamsInfo, disable_bios), sizeof(HBAParamsInfo::disable_bios),
     Form::kInverseFlag},
    {"Enable FC tape support", offsetof(HBAParamsInfo, enable_fc_tape), sizeof(HBAParamsInfo::enable_fc_tape),
     Form::kFlag},
    {"Enable LIP full login", offsetof(HBAParamsInfo, enable_lip_full_login),
     sizeof(HBAParamsInfo::enable_lip_full_login), Form::kFlag},
    {"Enable target reset", offsetof(HBAParamsInfo, enable_target_reset),
     sizeof(HBAParamsInfo::enable_target_reset), Form::kFlag},
    {"Enable receive out of order frames", offsetof(HBAParamsInfo, receive_out_of_order),
     sizeof(HBAParamsInfo::receive_out_of_order), Form::kFlag},
    {"Enable fabric assigned WWN", offsetof(HBAParamsInfo, enable_fabric_assign_wwn),
     sizeof(HBAParamsInfo::enable_fabric_assign_wwn), Form::kFlag},
    {"Enable VCLM", offsetof(HBAParamsInfo, disable_scm), sizeof(HBAParamsInfo::disable_scm),
     Form::kInverseFlag},
    {"Virtual lane", offsetof(HBAParamsInfo, enable_virtual_lane), sizeof(HBAParamsInfo::enable_virtual_lane),
     Form::kFlag},
};

constexpr Field kBoot[] = {
    {"Selectable boot", offsetof(HBAParamsInfo, enable_selectable_boot),
     sizeof(HBAParamsInfo::enable_selectable_boot), Form::kFlag},
    {"Selective login", offsetof(HBAParamsInfo, enable_selective_login),
     sizeof(HBAParamsInfo::enable_selective_login), Form::kFlag},
    {"Selective LUN login", offsetof(HBAParamsInfo, enable_selective_lun),
     sizeof(HBAParamsInfo::enable_selective_lun), Form::kFlag},
    {"World login", offsetof(HBAParamsInfo, force_world_login), sizeof(HBAParamsInfo::force_world_login),
     Form::kFlag},
    {"Fabric assigned boot LUN", offsetof(HBAParamsInfo, enable_fabric_assign_boot_lun),
     sizeof(HBAParamsInfo::enable_fabric_assign_boot_lun), Form::kFlag},
    {"Primary boot drive", offsetof(HBAParamsInfo, primary_drive), sizeof(HBAParamsInfo::primary_drive),
     Form::kBootDrive},
    {"Alternate boot drive 1", offsetof(HBAParamsInfo, alternate_drive_1),
     sizeof(HBAParamsInfo::alternate_drive_1), Form::kBootDrive},
    {"Alternate boot drive 2", offsetof(HBAParamsInfo, alternate_drive_2),
     sizeof(HBAParamsInfo::alternate_drive_2), Form::kBootDrive},
    {"Alternate boot drive 3", offsetof(HBAParamsInfo, alternate_drive_3),
     sizeof(HBAParamsInfo::alternate_drive_3), Form::kBootDrive},
    {"Alternate boot drive 4", offsetof(HBAParamsInfo, alternate_drive_4),
     sizeof(HBAParamsInfo::alternate_drive_4), Form::kBootDrive},
    {"Alternate boot drive 5", offsetof(HBAParamsInfo, alternate_drive_5),
     sizeof(HBAParamsInfo::alternate_drive_5), Form::kBootDrive},
    {"Alternate boot drive 6", offsetof(HBAParamsInfo, alternate_drive_6),
     sizeof(HBAParamsInfo::alternate_drive_6), Form::kBootDrive},
    {"Alternate boot drive 7", offsetof(HBAParamsInfo, alternate_drive_7),
     sizeof(HBAParamsInfo::alternate_drive_7), Form::kBootDrive},
};

constexpr Field kNvmeBootEntry[] = {
    {"enabled", offsetof(NVMeBootEntry, enable), sizeof(NVMeBootEntry::enable), Form::kFlag},
    {"port name", offsetof(NVMeBootEntry, port_name), sizeof(NVMeBootEntry::port_name), Form::kName},
    {"node name", offsetof(NVMeBootEntry, node_name), sizeof(NVMeBootEntry::node_name), Form::kName},
    {"namespace", offsetof(NVMeBootEntry, namespace_id), sizeof(NVMeBootEntry::namespace_id), Form::kNumber},
    {"controller", offsetof(NVMeBootEntry, controller_id), sizeof(NVMeBootEntry::controller_id),
     Form::kNumber},
    {"NQN", offsetof(NVMeBootEntry, nqn), sizeof(NVMeBootEntry::nqn), Form::kText},
};

constexpr Field kCreditRecovery[] = {
    {"Credit recovery", offsetof(recording::CreditRecoveryAnswer, status),
     sizeof(recording::CreditRecoveryAnswer::status), Form::kFlag},
    {"Credit recovery count", offsetof(recording::CreditRecoveryAnswer, configured),
     sizeof(recording::CreditRecoveryAnswer::configured), Form::kNumber},
    {"Credit recovery state", offsetof(recording::CreditRecoveryAnswer, state),
     sizeof(recording::CreditRecoveryAnswer::state), Form::kCode, kRecoveryStates},
    {"Credit recovery negotiated count", offsetof(recording::CreditRecoveryAnswer, negotiated),
     sizeof(recording::CreditRecoveryAnswer::negotiated), Form::kNumber},
    {"Credit recovery offline reason", offsetof(recording::CreditRecoveryAnswer, reason),
     sizeof(recording::CreditRecoveryAnswer::reason), Form::kText},
};

constexpr Field kFirmwareStatistics[] = {
    {"Correctable FEC error count", offsetof(FWPrivateStats, correctable_fec_errors),
     sizeof(FWPrivateStats::correctable_fec_errors), Form::kCounter},
    {"Uncorrectable FEC error count", offsetof(FWPrivateStats, uncorrectable_fec_errors),
     sizeof(FWPrivateStats::uncorrectable_fec_errors), Form::kCounter},
};

constexpr Field kCongestionStatistics[] = {
    {"node name", offsetof(SCMRStatisticsEntry, node_name), sizeof(SCMRStatisticsEntry::node_name),
     Form::kName},
    {"port name", offsetof(SCMRStatisticsEntry, port_name), sizeof(SCMRStatisticsEntry::port_name),
     Form::kName},
    {"element kind", offsetof(SCMRStatisticsEntry, kind), sizeof(SCMRStatisticsEntry::kind), Form::kCode,
     kElementKinds},
    {"congestion alarm count", offsetof(SCMRStatisticsEntry, congestion_alarms),
     sizeof(SCMRStatisticsEntry::congestion_alarms), Form::kCounter},
    {"congestion warning count", offsetof(SCMRStatisticsEntry, congestion_warnings),
     sizeof(SCMRStatisticsEntry::congestion_warnings), Form::kCounter},
    {"cleared congestion count", offsetof(SCMRStatisticsEntry, cleared_congestion),
     sizeof(SCMRStatisticsEntry::cleared_congestion), Form::kCounter},
    {"throttled down count", offsetof(SCMRStatisticsEntry, throttled_down),
     sizeof(SCMRStatisticsEntry::throttled_down), Form::kCounter},
    {"throttled up count", offsetof(SCMRStatisticsEntry, throttled_up),
     sizeof(SCMRStatisticsEntry::throttled_up), Form::kCounter},
    {"returned busy count", offsetof(SCMRStatisticsEntry, returned_busy),
     sizeof(SCMRStatisticsEntry::returned_busy), Form::kCounter},
    {"bottomed out count", offsetof(SCMRStatisticsEntry, bottomed_out),
     sizeof(SCMRStatisticsEntry::bottomed_out), Form::kCounter},
    {"link failure count", offsetof(SCMRStatisticsEntry, link_failure),
     sizeof(SCMRStatisticsEntry::link_failure), Form::kCounter},
    {"link unknown event count", offsetof(SCMRStatisticsEntry, link_unknown_event),
     sizeof(SCMRStatisticsEntry::link_unknown_event), Form::kCounter},
    {"loss of sync count", offsetof(SCMRStatisticsEntry, loss_of_sync),
     sizeof(SCMRStatisticsEntry::loss_of_sync), Form::kCounter},
    {"loss of signal count", offsetof(SCMRStatisticsEntry, loss_of_signal),
     sizeof(SCMRStatisticsEntry::loss_of_signal), Form::kCounter},
    {"primitive sequence error count", offsetof(SCMRStatisticsEntry, primitive_sequence_error),
     sizeof(SCMRStatisticsEntry::primitive_sequence_error), Form::kCounter},
    {"invalid transmission word count", offsetof(SCMRStatisticsEntry, invalid_transmission_word),
     sizeof(SCMRStatisticsEntry::invalid_transmission_word), Form::kCounter},
    {"invalid CRC count", offsetof(SCMRStatisticsEntry, invalid_crc),
     sizeof(SCMRStatisticsEntry::invalid_crc), Form::kCounter},
    {"link device specific event count", offsetof(SCMRStatisticsEntry, link_device_specific_event),
     sizeof(SCMRStatisticsEntry::link_device_specific_event), Form::kCounter},
    {"delivery failure unknown count", offsetof(SCMRStatisticsEntry, delivery_failure_unknown),
     sizeof(SCMRStatisticsEntry::delivery_failure_unknown), Form::kCounter},
    {"delivery timeout count", offsetof(SCMRStatisticsEntry, delivery_timeout),
     sizeof(SCMRStatisticsEntry::delivery_timeout), Form::kCounter},
    {"delivery unable to route count", offsetof(SCMRStatisticsEntry, delivery_unable_to_route),
     sizeof(SCMRStatisticsEntry::delivery_unable_to_route), Form::kCounter},
    {"delivery failure device specific count",
     offsetof(SCMRStatisticsEntry, delivery_failure_device_specific),
     sizeof(SCMRStatisticsEntry::delivery_failure_device_specific), Form::kCounter},
    {"congestion clear count", offsetof(SCMRStatisticsEntry, congestion_clear),
     sizeof(SCMRStatisticsEntry::congestion_clear), Form::kCounter},
    {"congestion lost credit count", offsetof(SCMRStatisticsEntry, congestion_lost_credit),
     sizeof(SCMRStatisticsEntry::congestion_lost_credit), Form::kCounter},
    {"congestion credit stall count", offsetof(SCMRStatisticsEntry, congestion_credit_stall),
     sizeof(SCMRStatisticsEntry::congestion_credit_stall), Form::kCounter},
    {"congestion oversubscription count", offsetof(SCMRStatisticsEntry, congestion_oversubscription),
     sizeof(SCMRStatisticsEntry::congestion_oversubscription), Form::kCounter},
    {"congestion device specific count", offsetof(SCMRStatisticsEntry, congestion_device_specific),
     sizeof(SCMRStatisticsEntry::congestion_device_specific), Form::kCounter},
    {"PUN count", offsetof(SCMRStatisticsEntry, pun), sizeof(SCMRStatisticsEntry::pun), Form::kCounter},
    {"link uncorrectable FEC count", offsetof(SCMRStatisticsEntry, link_uncorrectable_fec),
     sizeof(SCMRStatisticsEntry::link_uncorrectable_fec), Form::kCounter},
    Address(offsetof(SCMRStatisticsEntry, next)),
};

constexpr Field kCongestionProfile[] = {
    {"Congestion profile", offsetof(SCMRProfile, configuration_status),
     sizeof(SCMRProfile::configuration_status), Form::kCode, kConfigured},
    {"Congestion profile management", offsetof(SCMRProfile, management), sizeof(SCMRProfile::management),
     Form::kCode, kManagement},
    {"Congestion profile activation", offsetof(SCMRProfile, activation), sizeof(SCMRProfile::activation),
     Form::kCode, kActivations},
};

}  // namespace

std::span<const Field> AdapterListFields() {
  return kAdapterList;
}

std::span<const Field> AdapterFields() {
  return kAdapter;
}

std::span<const Field> PhyPortFields() {
  return kPhyPort;
}

std::span<const Field> PortFields() {
  return kPort;
}

std::span<const Field> TargetFields() {
  return kTarget;
}

std::span<const Field> LunFields() {
  return kLun;
}

std::span<const Field> TargetStatisticsFields() {
  return kTargetStatistics;
}

std::span<const Field> FlashVersionFields() {
  return kFlashVersion;
}

std::span<const Field> MemoBlockFields() {
  return kMemoBlock;
}

std::span<const Field> LockdownFields() {
  return kLockdown;
}

std::span<const Field> ParameterFields() {
  return kParameter;
}

std::span<const Field> BootFields() {
  return kBoot;
}

std::span<const Field> NvmeBootEntryFields() {
  return kNvmeBootEntry;
}

std::span<const Field> CreditRecoveryFields() {
  return kCreditRecovery;
}

std::span<const Field> FirmwareStatisticsFields() {
  return kFirmwareStatistics;
}

std::span<const Field> CongestionStatisticsFields() {
  return kCongestionStatistics;
}

std::span<const Field> CongestionProfileFields() {
  return kCongestionProfile;
}

}  // namespace diff
