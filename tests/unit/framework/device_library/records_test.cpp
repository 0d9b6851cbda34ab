
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/fixed_text.h"
#include "framework/device_library/flash_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

namespace {

// A record as the device library leaves it in memory: zero but for one value at one offset.
template <class Record, class Value>
Record WithValueAt(std::size_t offset, const Value& value) {
  std::array<unsigned char, sizeof(Record)> bytes = {};
  std::memcpy(&bytes.at(offset), &value, sizeof value);
  Record record;
  std::memcpy(static_cast<void*>(&record), bytes.data(), sizeof record);
  return record;
}

constexpr std::array<std::uint8_t, 2> kWord = {0x34, 0x12};
constexpr std::array<std::uint8_t, 4> kLong = {0x78, 0x56, 0x34, 0x12};
constexpr std::array<char, 8> kText = {'S', 'o', 'r', 'v', 'e', 'x', '1', '\0'};
constexpr void* kNoPointer = nullptr;

TEST(FixedText, EndsAtItsTerminator) {
  constexpr FixedText<8> text = {{'a', 'b', '\0', 'c', 'd', 'e', 'f', 'g'}};
  EXPECT_EQ(text.View(), "ab");
  EXPECT_FALSE(text.Empty());
}

TEST(FixedText, EndsWithItsFieldWithoutATerminator) {
  constexpr FixedText<4> text = {{'a', 'b', 'c', 'd'}};
  EXPECT_EQ(text.View(), "abcd");
}

TEST(FixedText, IsEmptyWhenItBeginsWithATerminator) {
  constexpr FixedText<4> text = {{'\0', 'b', 'c', 'd'}};
  EXPECT_EQ(text.View(), "");
  EXPECT_TRUE(text.Empty());
}

TEST(AdapterList, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<AdapterList>(0, kLong).count), 0x12345678u);
  const AdapterEntry adapter = {};
  EXPECT_EQ((WithValueAt<AdapterList>(8, &adapter).first), &adapter);
}

TEST(AdapterEntry, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<AdapterEntry>(0, kText).serial_number.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(32, kLong).type), 0x12345678u);
  EXPECT_EQ((WithValueAt<AdapterEntry>(36, kText).manufacturer.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(116, kWord).vendor_id), 0x1234);
  EXPECT_EQ((WithValueAt<AdapterEntry>(118, kWord).subsystem_vendor_id), 0x1234);
  EXPECT_EQ((WithValueAt<AdapterEntry>(120, kWord).subsystem_device_id), 0x1234);
  EXPECT_EQ((WithValueAt<AdapterEntry>(122, kWord).bus_id), 0x1234);
  EXPECT_EQ((WithValueAt<AdapterEntry>(156, kText).model.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(188, kText).flash_bios_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(220, kText).flash_fcode_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(252, kText).flash_efi_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(284, kText).flash_firmware_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(316, kText).multiboot_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<AdapterEntry>(348, kLong).chip_revision), 0x12345678u);
  const PortList ports = {};
  EXPECT_EQ((WithValueAt<AdapterEntry>(384, &ports).ports), &ports);
  const AdapterEntry next = {};
  EXPECT_EQ((WithValueAt<AdapterEntry>(392, &next).next), &next);
}

TEST(PhyPortEntry, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<PhyPortEntry>(0, kLong).number), 0x12345678u);
  const ProtocolList protocols = {};
  EXPECT_EQ((WithValueAt<PhyPortEntry>(8, &protocols).protocols), &protocols);
  const PhyPortEntry next = {};
  EXPECT_EQ((WithValueAt<PhyPortEntry>(16, &next).next), &next);
  EXPECT_EQ((WithValueAt<PhyPortEntry>(16, kNoPointer).next), nullptr);
}

TEST(PortAndProtocolLists, HoldTheirFirstEntryAtEight) {
  const PhyPortEntry port = {};
  EXPECT_EQ((WithValueAt<PortList>(8, &port).first), &port);
  const FCProtocolEntry protocol = {};
  EXPECT_EQ((WithValueAt<ProtocolList>(8, &protocol).first), &protocol);
}

TEST(FCProtocolEntry, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(0, kWord).node_name[1]), 0x12);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(8, kWord).port_name[0]), 0x34);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(28, kWord).pci.vendor_id), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(30, kWord).pci.device_id), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(32, kWord).pci.subsystem_vendor_id), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(34, kWord).pci.subsystem_device_id), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(78, kWord).pci.link_capability), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(80, kWord).pci.link_status), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(108, kText).driver_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(160, kLong).capabilities), 0x12345678u);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(396, kText).running_firmware_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(428, kText).flash_bios_version.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(462, std::uint16_t{1}).interface_type),
            PortInterfaceType::kPhysical);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(462, std::uint16_t{3}).interface_type),
            PortInterfaceType::kNpivVirtual);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(476, kWord).flash_firmware_version[1]), 0x12);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(608, kWord).port_id.octets[0]), 0x34);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(611, std::uint8_t{7}).port_type), 7);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(612, std::uint8_t{1}).port_state), PortState::kLinkUp);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(613, std::uint8_t{2}).connection_mode), ConnectionMode::kLoop);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(652, kLong).port_speed), 0x12345678u);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(660, kWord).link_flags), 0x1234);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(664, std::uint8_t{9}).supported_speeds), 9);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(668, kWord).principal_fabric_name[0]), 0x34);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(676, kWord).adjacent_fabric_name[0]), 0x34);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(752, kLong).driver_counters[0]), 0x12345678u);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(796, kLong).firmware_counters[5]), 0x12345678u);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2160, kWord).host_id[1]), 0x12);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2176, kText).host_nqn.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2672, std::uint8_t{4}).pci_bus), 4);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2673, std::uint8_t{5}).pci_device), 5);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2674, std::uint8_t{6}).pci_function), 6);
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2676, std::uint32_t{1}).protocol_type), ProtocolType::kFcoe);
  const FCProtocolEntry next = {};
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2680, &next).next), &next);
  EXPECT_EQ(sizeof(FCProtocolEntry), 2688u);
}

TEST(FCProtocolEntry, HasItsHandleAtSixteen) {
  const FCProtocolEntry entry = {};
  EXPECT_EQ(reinterpret_cast<const char*>(&entry.handle) - reinterpret_cast<const char*>(&entry), 16);
  EXPECT_EQ(sizeof entry.handle, 12u);
}

TEST(TargetEntry, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(1992, kLong).target_count), 0x12345678u);
  const TargetEntry target = {};
  EXPECT_EQ((WithValueAt<FCProtocolEntry>(2000, &target).first_target), &target);
  EXPECT_EQ((WithValueAt<TargetEntry>(1488, &target).next), &target);
  EXPECT_EQ((WithValueAt<TargetEntry>(0, kWord).node_name[1]), 0x12);
  EXPECT_EQ((WithValueAt<TargetEntry>(8, kWord).port_name[1]), 0x12);
  EXPECT_EQ((WithValueAt<TargetEntry>(16, kWord).port_id.octets[1]), 0x12);
  EXPECT_EQ((WithValueAt<TargetEntry>(22, kWord).number), 0x1234);
  EXPECT_EQ((WithValueAt<TargetEntry>(164, kText).vendor_id.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<TargetEntry>(172, kText).product_id.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<TargetEntry>(224, kLong).lun_count), 0x12345678u);
  EXPECT_EQ((WithValueAt<TargetEntry>(248, kLong).product_type), 0x12345678u);
  EXPECT_EQ((WithValueAt<TargetEntry>(260, kText).serial_number.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<TargetEntry>(542, kWord).controller_id), 0x1234);
  EXPECT_EQ((WithValueAt<TargetEntry>(560, kText).nqn.View()), "Sorvex1");
  const LunEntry lun = {};
  EXPECT_EQ((WithValueAt<TargetEntry>(232, &lun).first_lun), &lun);
}

TEST(FCProtocolEntry, SaysWhatStateItsPortIsIn) {
  EXPECT_TRUE(IsLinkUp(WithValueAt<FCProtocolEntry>(612, std::uint8_t{1})));
  EXPECT_FALSE(IsLinkUp(WithValueAt<FCProtocolEntry>(612, std::uint8_t{3})));
  EXPECT_FALSE(IsLinkUp(WithValueAt<FCProtocolEntry>(612, std::uint8_t{0})));
  EXPECT_TRUE(IsVirtualPort(WithValueAt<FCProtocolEntry>(462, std::uint16_t{3})));
  EXPECT_FALSE(IsVirtualPort(WithValueAt<FCProtocolEntry>(462, std::uint16_t{1})));
}

TEST(FCProtocolEntry, IsInMaintenanceModeWithBothFlags) {
  FCProtocolEntry fc = {};
  for (unsigned driver = 0; driver <= 0xFF; ++driver) {
    for (unsigned port = 0; port <= 0xFF; ++port) {
      fc.driver_flags = static_cast<std::uint8_t>(driver);
      fc.port_flags = static_cast<std::uint8_t>(port);
      ASSERT_EQ(IsInMaintenanceMode(fc), (driver & 4u) != 0 && (port & 1u) != 0) << driver << " " << port;
    }
  }
}

TEST(FCProtocolEntry, HasItsCapabilities) {
  const FCProtocolEntry fc = WithValueAt<FCProtocolEntry>(160, std::uint32_t{0x24000000});
  EXPECT_TRUE(HasCapability(fc, kSecondCongestionStatistics));
  EXPECT_TRUE(HasCapability(fc, kSecondLinkTest));
  EXPECT_FALSE(HasCapability(fc, kFirstCongestionStatistics));
  EXPECT_FALSE(HasCapability(fc, kVirtualLanes));
  EXPECT_FALSE(HasCapability(fc, kIoThrottling));
  EXPECT_TRUE(HasCapability(fc, kFirstCongestionStatistics | kSecondCongestionStatistics));
}

TEST(TargetEntry, IsOnlineWithBothBits) {
  TargetEntry target = {};
  target.state_flags[2] = 0x02;
  EXPECT_FALSE(IsOnline(target));
  target.state_flags[4] = 0x01;
  EXPECT_TRUE(IsOnline(target));
  target.state_flags[2] = 0xFD;
  EXPECT_FALSE(IsOnline(target));
  EXPECT_FALSE(IsUnconfigured(target));
  target.state_flags[0] = 0x40;
  EXPECT_TRUE(IsUnconfigured(target));
  target.state_flags[0] = 0xBF;
  EXPECT_FALSE(IsUnconfigured(target));
}

TEST(IsNvmeTarget, LooksAtBit3OfByte197) {
  EXPECT_TRUE(IsNvmeTarget(WithValueAt<TargetEntry>(197, std::uint8_t{0x08})));
  EXPECT_FALSE(IsNvmeTarget(WithValueAt<TargetEntry>(197, std::uint8_t{0xF7})));
  EXPECT_FALSE(IsNvmeTarget(WithValueAt<TargetEntry>(196, std::uint8_t{0xFF})));
  EXPECT_FALSE(IsNvmeTarget(WithValueAt<TargetEntry>(198, std::uint8_t{0xFF})));
}

TEST(LunEntry, HasItsFieldsInPlace) {
  EXPECT_EQ((WithValueAt<LunEntry>(0, kWord).number), 0x1234);
  EXPECT_EQ((WithValueAt<LunEntry>(14, kText).vendor_id.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<LunEntry>(22, kText).product_id.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<LunEntry>(38, kLong).fcp_size_mb.Value()), 0x12345678u);
  EXPECT_EQ((WithValueAt<LunEntry>(43, kWord).unique_id[1]), 0x12);
  EXPECT_EQ((WithValueAt<LunEntry>(75, std::uint8_t{16}).fcp_unique_id_length), 16);
  EXPECT_EQ((WithValueAt<LunEntry>(80, kText).nvme_revision.View()), "Sorvex1");
  EXPECT_EQ((WithValueAt<LunEntry>(364, std::uint8_t{16}).nvme_unique_id_length), 16);
  EXPECT_EQ((WithValueAt<LunEntry>(365, std::uint64_t{0x0123456789ABCDEF}).nvme_size_mb.Value()),
            0x0123456789ABCDEFu);
  const LunEntry next = {};
  EXPECT_EQ((WithValueAt<LunEntry>(384, &next).next), &next);
}

// The widths of texts whose fields end where the next one begins.
TEST(Texts, EndWhereTheNextFieldBegins) {
  EXPECT_EQ(sizeof AdapterEntry::manufacturer, 80u);
  EXPECT_EQ(sizeof AdapterEntry::serial_number, 32u);
  EXPECT_EQ(sizeof AdapterEntry::model, 32u);
  EXPECT_EQ(sizeof AdapterEntry::multiboot_version, 32u);
  EXPECT_EQ(sizeof FCProtocolEntry::driver_version, 52u);
  EXPECT_EQ(sizeof FCProtocolEntry::running_firmware_version, 32u);
  EXPECT_EQ(sizeof FCProtocolEntry::flash_bios_version, 32u);
  EXPECT_EQ(sizeof FCProtocolEntry::host_nqn, 256u);
}

TEST(FlashRecords, HaveTheirFieldsInPlace) {
  EXPECT_EQ((WithValueAt<FlashMemoBlock>(0, std::array<char, 4>{'F', 'M', 'B', 'S'}).signature[3]), 'S');
  EXPECT_EQ((WithValueAt<FlashMemoBlock>(16, kWord).family_firmware.minor), 0x12);
  EXPECT_EQ(sizeof(FlashMemoBlock), 48u);
  EXPECT_EQ(sizeof(FlashComponentVersions), 256u);
}

TEST(ComponentVersion, FindsAllZeroAndAllOnes) {
  EXPECT_TRUE((ComponentVersion{0, 0, 0}).AllZero());
  EXPECT_FALSE((ComponentVersion{1, 0, 0}).AllZero());
  EXPECT_FALSE((ComponentVersion{0, 1, 0}).AllZero());
  EXPECT_FALSE((ComponentVersion{0, 0, 1}).AllZero());
  EXPECT_TRUE((ComponentVersion{255, 255, 255}).AllOnes());
  EXPECT_FALSE((ComponentVersion{254, 255, 255}).AllOnes());
  EXPECT_FALSE((ComponentVersion{255, 254, 255}).AllOnes());
  EXPECT_FALSE((ComponentVersion{255, 255, 254}).AllOnes());
}

}  // namespace
