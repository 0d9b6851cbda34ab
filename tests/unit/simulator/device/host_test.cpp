#include <cstring>
#include <string>

#include "base/text.h"
#include "framework/device_library/families.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using Records = LabTest;

TEST_F(Records, BuiltinHostBeginsWithTheElmAdapter) {
  const AdapterEntry* adapter = AdapterAt(0);
  EXPECT_EQ(adapter->model.View(), "ZX100");
  EXPECT_EQ(adapter->serial_number.View(), "AB12345");
  EXPECT_EQ(adapter->manufacturer.View(), "Sorvex");
  EXPECT_EQ(adapter->vendor_id, 0x1C9E);
  EXPECT_EQ(adapter->bus_id, 5);
  EXPECT_EQ(adapter->type, 2u);
  EXPECT_EQ(adapter->multiboot_version.View(), "2.01.63");
  EXPECT_EQ(TORPI_GetAdapterList()->count, 6u);
}

TEST_F(Records, BuiltinHostHasPortsUpAndDownAVirtualPortAndAnFcoePort) {
  EXPECT_EQ(EntryAt(0)->port_state, PortState::kLinkUp);
  EXPECT_EQ(EntryAt(0)->port_speed, 22u);
  EXPECT_EQ(EntryAt(0)->link_flags, 0x8000);
  EXPECT_EQ(EntryAt(0, 1)->port_state, PortState::kOffline);
  EXPECT_EQ(EntryAt(0, 0, 1)->interface_type, PortInterfaceType::kNpivVirtual);
  EXPECT_EQ(EntryAt(0, 0, 1)->port_name[1], 1);
  EXPECT_EQ(EntryAt(4)->protocol_type, ProtocolType::kFcoe);
  EXPECT_TRUE(IsDeviceCedar(EntryAt(4)->pci));
}

TEST_F(Records, ReservedBytesAreZero) {
  const FCProtocolEntry& entry = *EntryAt(0);
  for (const std::byte filler : entry.reserved_185) EXPECT_EQ(filler, std::byte{0});
  for (const std::byte filler : entry.pci.reserved_8) EXPECT_EQ(filler, std::byte{0});
}

TEST_F(Records, EveryKeyReachesItsField) {
  UseHost(
      "adapters:\n"
      "  - family: hazel\n"
      "    model: M1\n"
      "    serial: S1\n"
      "    manufacturer: Maker\n"
      "    type: 7\n"
      "    vendor-id: 0x1111\n"
      "    device-id: 0x2222\n"
      "    subsystem-vendor-id: 0x3333\n"
      "    subsystem-device-id: 0x4444\n"
      "    bus: 0x5555\n"
      "    chip-revision: 9\n"
      "    versions: {multiboot: 1.2.3, firmware: 4.5.6, bios: 7.8, efi: 9.10, fcode: 11.12, driver: D1,\n"
      "               running-firmware: R1, running-mpi: 1.2.3, running-pep: 4.5.6}\n"
      "    flash: {pep-firmware: 1.1.1, pep-softrom: 2.2.2, pep-board-config: 3.3.3, preload-firmware-area: "
      "4.4.4,\n"
      "            fc-board-config: 5.5.5, mpi-firmware: 6.6.6, mpi-softrom: 7.7.7, pcie-serdes: none}\n"
      "    memo-block: {signature: FXYZ, family-firmware: 1.2.3, mbi-version: 4.5.6, build-date: "
      "2024-02-29,\n"
      "                 tool-id: VIPL, tool-version: 1.2.3.4, updated: \"2026-03-14 09:26:53\"}\n"
      "    ports:\n"
      "      - number: 3\n"
      "        wwpn: 01:02:03:04:05:06:07:08\n"
      "        wwnn: 11:12:13:14:15:16:17:18\n"
      "        port-id: 0a:0b:0c\n"
      "        link: 7\n"
      "        speed-code: 21\n"
      "        type: 2\n"
      "        protocol: 5\n"
      "        port-type: 4\n"
      "        connection: loop\n"
      "        supported-speeds: [1, 2, 10]\n"
      "        error-correction: true\n"
      "        principal-fabric: 21:22:23:24:25:26:27:28\n"
      "        adjacent-fabric: 31:32:33:34:35:36:37:38\n"
      "        host-nqn: nqn.x\n"
      "        host-id: 00:01:02:03:04:05:06:07:08:09:0a:0b:0c:0d:0e:0f\n"
      "        maintenance: true\n"
      "        driver-flags: 1\n"
      "        capabilities: 0x84000000\n"
      "        rom: [uefi]\n"
      "        pci-bus: 250\n"
      "        pci-device: 31\n"
      "        pci-function: 7\n"
      "        pci-capability: {speed: 16, width: 32}\n"
      "        pci-status: {speed: 2.5, width: 1}\n"
      "        driver-counters: [1, 2, 3, 4, 5, 4294967295]\n"
      "        firmware-counters: [7]\n");
  const AdapterEntry& adapter = *AdapterAt(0);
  EXPECT_EQ(adapter.model.View(), "M1");
  EXPECT_EQ(adapter.serial_number.View(), "S1");
  EXPECT_EQ(adapter.manufacturer.View(), "Maker");
  EXPECT_EQ(adapter.type, 7u);
  EXPECT_EQ(adapter.vendor_id, 0x1111);
  EXPECT_EQ(adapter.subsystem_vendor_id, 0x3333);
  EXPECT_EQ(adapter.subsystem_device_id, 0x4444);
  EXPECT_EQ(adapter.bus_id, 0x5555);
  EXPECT_EQ(adapter.chip_revision, 9u);
  EXPECT_EQ(adapter.multiboot_version.View(), "1.2.3");
  EXPECT_EQ(adapter.flash_firmware_version.View(), "4.5.6");
  EXPECT_EQ(adapter.flash_bios_version.View(), "7.8");
  EXPECT_EQ(adapter.flash_efi_version.View(), "9.10");
  EXPECT_EQ(adapter.flash_fcode_version.View(), "11.12");

  EXPECT_EQ(adapter.ports->first->number, 3u);
  const FCProtocolEntry& entry = *EntryAt(0);
  EXPECT_EQ(lab::OctetText(entry.port_name.octets), "01:02:03:04:05:06:07:08");
  EXPECT_EQ(lab::OctetText(entry.node_name.octets), "11:12:13:14:15:16:17:18");
  EXPECT_EQ(lab::OctetText(entry.principal_fabric_name.octets), "21:22:23:24:25:26:27:28");
  EXPECT_EQ(lab::OctetText(entry.adjacent_fabric_name.octets), "31:32:33:34:35:36:37:38");
  EXPECT_EQ(lab::OctetText(entry.port_id.octets), "0a:0b:0c");
  EXPECT_EQ(lab::OctetText(entry.host_id), "00:01:02:03:04:05:06:07:08:09:0a:0b:0c:0d:0e:0f");
  EXPECT_EQ(entry.host_nqn.View(), "nqn.x");
  EXPECT_EQ(entry.pci.vendor_id, 0x1111);
  EXPECT_EQ(entry.pci.device_id, 0x2222);
  EXPECT_EQ(entry.pci.subsystem_vendor_id, 0x3333);
  EXPECT_EQ(entry.pci.subsystem_device_id, 0x4444);
  EXPECT_EQ(entry.pci.link_capability, (24 << 4) | 4);
  EXPECT_EQ(entry.pci.link_status, (1 << 4) | 1);
  EXPECT_EQ(entry.driver_version.View(), "D1");
  EXPECT_EQ(entry.running_firmware_version.View(), "R1");
  EXPECT_EQ(entry.flash_bios_version.View(), "7.8");
  EXPECT_EQ(lab::OctetText({entry.flash_firmware_version, 4}), "04:05:06:00");
  EXPECT_EQ(lab::OctetText({entry.flash_efi_version, 4}), "09:0a:00:00");
  EXPECT_EQ(lab::OctetText({entry.flash_fcode_version, 4}), "0b:0c:00:00");
  EXPECT_EQ(lab::OctetText({entry.running_mpi_version, 4}), "01:02:03:00");
  EXPECT_EQ(lab::OctetText({entry.running_pep_version, 4}), "04:05:06:00");
  EXPECT_EQ(entry.port_state, static_cast<PortState>(7));
  EXPECT_EQ(entry.port_speed, 21u);
  EXPECT_EQ(static_cast<unsigned>(entry.interface_type), 2u);
  EXPECT_EQ(static_cast<unsigned>(entry.protocol_type), 5u);
  EXPECT_EQ(entry.port_type, 4);
  EXPECT_EQ(entry.connection_mode, ConnectionMode::kLoop);
  EXPECT_EQ(entry.supported_speeds, 0x07);
  EXPECT_EQ(entry.link_flags, 0x8000);
  EXPECT_EQ(entry.driver_flags, 5);
  EXPECT_EQ(entry.port_flags, 1);
  EXPECT_EQ(entry.capabilities, 0x84000000u);
  EXPECT_EQ(entry.rom_flags, 2u);
  EXPECT_EQ(entry.pci_bus, 250);
  EXPECT_EQ(entry.pci_device, 31);
  EXPECT_EQ(entry.pci_function, 7);
  EXPECT_EQ(entry.driver_counters[5], 4294967295u);
  EXPECT_EQ(entry.firmware_counters[0], 7u);
}

// The firmware has three numbers in a port's record, the boot code two.
TEST_F(Records, VersionsOfBootCodeHaveTwoNumbersInARecord) {
  UseHost(
      "adapters:\n"
      "  - family: hazel\n"
      "    versions: {firmware: 4.5.6, efi: 9.10.11, fcode: 11.12.13}\n"
      "    ports: [{}]\n");
  EXPECT_EQ(lab::OctetText({EntryAt(0)->flash_firmware_version, 4}), "04:05:06:00");
  EXPECT_EQ(lab::OctetText({EntryAt(0)->flash_efi_version, 4}), "09:0a:00:00");
  EXPECT_EQ(lab::OctetText({EntryAt(0)->flash_fcode_version, 4}), "0b:0c:00:00");
}

TEST_F(Records, FlashCallsGiveTheHostFilesVersions) {
  UseHost(
      "adapters:\n"
      "  - family: dahlia\n"
      "    flash: {pep-firmware: 1.1.1, pcie-serdes: 255.255.255, mpi-softrom: none}\n"
      "    memo-block: {signature: FXYZ, mbi-version: 4.5.6, build-date: 2024-02-29, tool-id: VIPL,\n"
      "                 tool-version: 1.2.3.4, updated: \"2026-03-14 09:26:53\"}\n"
      "    ports: [{}]\n");
  FlashComponentVersions versions;
  std::memset(&versions, 0x5A, sizeof versions);
  ASSERT_EQ(TORPI_GetFlashComponentVersion(HandleAt(0), &versions), 0u);
  EXPECT_EQ(lab::VersionText(versions.pep_firmware), "1.01.01");
  EXPECT_TRUE(versions.pcie_serdes.AllOnes());
  EXPECT_TRUE(versions.mpi_softrom.AllZero());
  EXPECT_EQ(lab::VersionText(versions.fc_board_config), "1.00.05");
  EXPECT_EQ(versions.reserved_64[0], std::byte{0x5A});

  FlashMemoBlock memo{};
  ASSERT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(0), &memo), 0u);
  EXPECT_EQ(std::string(memo.signature, 4), "FXYZ");
  EXPECT_EQ(lab::VersionText(memo.mbi_version), "4.05.06");
  EXPECT_EQ(std::string(memo.mbi_build_date, 8), "20240229");
  EXPECT_EQ(std::string(memo.tool_id, 4), "VIPL");
  EXPECT_EQ(lab::OctetText({memo.tool_version, 4}), "01:02:03:04");
  EXPECT_EQ(lab::TimeText(memo), "2026-03-14 09:26:53");
  EXPECT_EQ(memo.update_year, 2026);
}

TEST_F(Records, TextThatFillsItsFieldHasNoTerminator) {
  UseHost("adapters:\n  - family: elm\n    serial: 12345678901234567890123456789012\n");
  EXPECT_EQ(AdapterAt(0)->serial_number.View(), "12345678901234567890123456789012");
  EXPECT_EQ(AdapterAt(0)->type, 2u);
}

}  // namespace
