#include "recorded/recorded_host.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "recorded/recorded_file.h"
#include "recording/recording_text.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using recording::Asked;
using recording::HostRecording;
using recording::ProtocolRecording;

// One adapter with as many ports, of which each has one entry with a target and two LUNs.
HostRecording HostOf(std::size_t ports) {
  HostRecording host;
  host.has_list = true;
  recording::AdapterRecording& adapter = host.adapters.emplace_back();
  adapter.has_ports = true;
  for (std::size_t i = 0; i < ports; ++i) {
    recording::PhyPortRecording& port = adapter.ports.emplace_back();
    port.has_protocols = true;
    ProtocolRecording& entry = port.protocols.emplace_back();
    entry.record.port_name[7] = static_cast<std::uint8_t>(i + 1);
    recording::TargetRecording& target = entry.targets.emplace_back();
    target.record.number = 5;
    target.record.port_name[0] = static_cast<std::uint8_t>(0x50 + i);
    target.luns.resize(2);
  }
  return host;
}

TEST(RecordedHost, ChainsItsRecords) {
  const lab::RecordedHost host(HostOf(2));
  const AdapterEntry* const adapter = host.List()->first;
  ASSERT_NE(adapter, nullptr);
  EXPECT_EQ(adapter->next, nullptr);
  const PhyPortEntry* const port = adapter->ports->first;
  ASSERT_NE(port->next, nullptr);
  EXPECT_EQ(port->next->next, nullptr);
  const FCProtocolEntry* const entry = port->next->protocols->first;
  EXPECT_EQ(entry->port_name[7], 2);
  EXPECT_EQ(entry->next, nullptr);
  EXPECT_EQ(entry->first_target->next, nullptr);
  ASSERT_NE(entry->first_target->first_lun->next, nullptr);
  EXPECT_EQ(entry->first_target->first_lun->next->next, nullptr);
}

TEST(RecordedHost, NullListsStayNull) {
  EXPECT_EQ(lab::RecordedHost(HostRecording{}).List(), nullptr);
  HostRecording recording;
  recording.has_list = true;
  EXPECT_EQ(lab::RecordedHost(recording).List()->first, nullptr);
  recording.adapters.resize(2);
  recording.adapters[1].has_ports = true;
  recording.adapters[1].ports.resize(1);
  const lab::RecordedHost host(recording);
  EXPECT_EQ(host.List()->first->ports, nullptr);
  EXPECT_EQ(host.List()->first->next->ports->first->protocols, nullptr);
}

TEST(RecordedHost, FindsAPortByTheAddressOfItsHandleFirst) {
  const lab::RecordedHost host(HostOf(3));  // all handles are zero
  const PhyPortEntry* const second = host.List()->first->ports->first->next;
  const DeviceHandle& handle = second->protocols->first->handle;
  ASSERT_NE(host.FindPort(handle), nullptr);
  EXPECT_EQ(host.FindPort(handle)->record.port_name[7], 2);
  const DeviceHandle copy = handle;
  EXPECT_EQ(host.FindPort(copy)->record.port_name[7], 1);
  EXPECT_EQ(host.FindPort(DeviceHandle{1, 2, 3}), nullptr);
}

TEST(RecordedHost, EntriesOfOtherProtocolsAreNoPorts) {
  HostRecording recording = HostOf(2);
  recording.adapters[0].ports[0].protocols[0].record.protocol_type = static_cast<ProtocolType>(2);
  const lab::RecordedHost host(recording);
  EXPECT_EQ(host.FindPort(DeviceHandle{})->record.port_name[7], 2);
}

TEST(RecordedHost, FindsTargets) {
  const lab::RecordedHost host(HostOf(2));
  EXPECT_EQ(host.FindTarget(0, WorldWideName{{0x51}})->record.port_name[0], 0x51);
  EXPECT_EQ(host.FindTarget(0, WorldWideName{{0x52}}), nullptr);
  EXPECT_EQ(host.FindTarget(1, WorldWideName{{0x51}}), nullptr);
  EXPECT_NE(lab::FindTarget(*host.FindPort(DeviceHandle{}), 5), nullptr);
  EXPECT_EQ(lab::FindTarget(*host.FindPort(DeviceHandle{}), 6), nullptr);
}

TEST(RecordedFile, IsKnownByItsKey) {
  EXPECT_TRUE(lab::IsRecording("snapshot: 1\n"));
  EXPECT_TRUE(lab::IsRecording("# a host\nsnapshot: 1\n"));
  EXPECT_FALSE(lab::IsRecording("# snapshot: 1\nadapters: []\n"));
  EXPECT_FALSE(lab::IsRecording("adapters:\n  snapshot: 1\n"));
}

TEST(RecordedFile, GivesBackWhatWasWritten) {
  HostRecording host = HostOf(2);
  ProtocolRecording& port = host.adapters[0].ports[1].protocols[0];
  port.mezzanine = {Asked::kYes, 7, 1};
  port.memo_block.asked = Asked::kMissing;
  port.vpd = {Asked::kYes, 0, {2000, {1, 2, 3}}};
  port.nvme_boot.asked = Asked::kYes;
  std::memset(port.nvme_boot.record.entries[7].nqn.bytes, 0x80, 256);
  port.firmware_statistics = {Asked::kYes, 0, {true, 9, {}}};
  port.congestion_statistics.asked = Asked::kYes;
  port.congestion_statistics.record.elements.resize(2);
  port.congestion_statistics.record.elements[1].pun = 77;
  port.targets[0].statistics = {Asked::kYes, 5, {}};
  const std::string text = recording::ToText(host);
  HostRecording read;
  ASSERT_EQ(lab::ReadRecording("lab.yaml", text, read), "");
  EXPECT_EQ(recording::ToText(read), text);
  EXPECT_EQ(read.adapters[0].ports[1].protocols[0].congestion_statistics.record.elements[1].pun, 77u);
  EXPECT_TRUE(read.adapters[0].ports[1].protocols[0].firmware_statistics.record.is_null);
}

TEST(RecordedFile, TakesNoAddressFromAText) {
  const std::string text =
      "snapshot: 1\n"
      "list: '8: ff*8'\n"
      "adapters:\n"
      "  - record: '384: ff*16'\n"
      "    port-list: '8: ff*8'\n"
      "    ports:\n"
      "      - record: '8: ff*16'\n"
      "        protocol-list: '8: ff*8'\n"
      "        protocols:\n"
      "          - record: '2000: ff*8 2680: ff*8'\n"
      "            congestion-statistics: {elements: [{record: '968: ff*8'}]}\n"
      "            targets:\n"
      "              - record: '232: ff*8 1488: ff*8'\n"
      "                luns: '384: ff*8'\n";
  HostRecording host;
  ASSERT_EQ(lab::ReadRecording("lab.yaml", text, host), "");
  EXPECT_EQ(host.list.first, nullptr);
  const recording::AdapterRecording& adapter = host.adapters.at(0);
  EXPECT_EQ(adapter.record.ports, nullptr);
  EXPECT_EQ(adapter.record.next, nullptr);
  EXPECT_EQ(adapter.port_list.first, nullptr);
  const recording::PhyPortRecording& port = adapter.ports.at(0);
  EXPECT_EQ(port.record.protocols, nullptr);
  EXPECT_EQ(port.record.next, nullptr);
  EXPECT_EQ(port.protocol_list.first, nullptr);
  const ProtocolRecording& entry = port.protocols.at(0);
  EXPECT_EQ(entry.record.first_target, nullptr);
  EXPECT_EQ(entry.record.next, nullptr);
  EXPECT_EQ(entry.congestion_statistics.record.elements.at(0).next, nullptr);
  EXPECT_EQ(entry.targets.at(0).record.first_lun, nullptr);
  EXPECT_EQ(entry.targets.at(0).record.next, nullptr);
  EXPECT_EQ(entry.targets.at(0).luns.at(0).next, nullptr);
}

class RecordedLab : public LabTest {
 protected:
  void UseRecording(const HostRecording& host) const { UseHost(recording::ToText(host)); }
};

TEST_F(RecordedLab, BufferThatIsSmallerThanTheAnswerIsFilledAndNoMore) {
  HostRecording host = HostOf(1);
  host.adapters[0].ports[0].protocols[0].vpd = {Asked::kYes, 0, {4000, {1, 2, 3, 4}}};
  UseRecording(host);
  std::uint8_t buffer[4] = {9, 9, 9, 9};
  std::uint32_t size = 2;
  EXPECT_EQ(TORPI_GetVpd(HandleAt(0), 0, buffer, &size), 0u);
  EXPECT_EQ(buffer[1], 2);
  EXPECT_EQ(buffer[2], 9);
  EXPECT_EQ(size, 4000u);
}

TEST_F(RecordedLab, NullPlacesForResultsAreRefused) {
  UseRecording(HostOf(1));
  const DeviceHandle* const handle = HandleAt(0);
  EXPECT_EQ(TORPI_GetVpd(handle, 0, nullptr, nullptr), 903u);
  EXPECT_EQ(TORPI_GetFlashComponentVersion(handle, nullptr), 903u);
  EXPECT_EQ(TORPI_GetHBAParamsInfo(handle, nullptr, nullptr), 903u);
  EXPECT_EQ(TORPI_GetFWPrivateStats(handle, nullptr, nullptr), 903u);
  EXPECT_EQ(TORPI_FCGetBBCSupportInfoEx(handle, nullptr, nullptr, nullptr, nullptr, nullptr, 64), 903u);
  EXPECT_EQ(TORPI_GetSCMRStatisticsList(handle, nullptr), 903u);
  EXPECT_EQ(TORPI_GetTargetLinkSpeed(handle, 5, nullptr), 903u);
  EXPECT_EQ(TORPI_GetPortStatisticsFC(0, 0, nullptr, nullptr), 903u);
  EXPECT_EQ(TORPI_IsRebootRequired(nullptr), 903u);
  std::uint8_t image[512];
  EXPECT_EQ(TORPI_GetSFPDataEx(handle, image, 2, 0), 903u);
}

TEST_F(RecordedLab, HandleOfNoPortIsUnknown) {
  UseRecording(HostOf(1));
  const DeviceHandle stranger = {1, 2, 3};
  FlashMemoBlock memo;
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(&stranger, &memo), 901u);
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(nullptr, &memo), 901u);
}

TEST_F(RecordedLab, StatisticsListIsTheCallersUntilItIsHandedBack) {
  HostRecording host = HostOf(1);
  recording::StatisticsList& list = host.adapters[0].ports[0].protocols[0].congestion_statistics.record;
  host.adapters[0].ports[0].protocols[0].congestion_statistics.asked = Asked::kYes;
  list.elements.resize(2);
  list.free_result = 40;
  UseRecording(host);
  SCMRStatisticsEntry* first = nullptr;
  ASSERT_EQ(TORPI_GetSCMRStatisticsList(HandleAt(0), &first), 0u);
  ASSERT_NE(first->next, nullptr);
  EXPECT_EQ(first->next->next, nullptr);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(first), 40u);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(first), 903u);
}

TEST_F(RecordedLab, RefusalWritesWhatTheCallWrote) {
  HostRecording host = HostOf(1);
  host.adapters[0].ports[0].protocols[0].beacon = {Asked::kYes, 5, 0xa5a5a5a5};
  UseRecording(host);
  std::uint32_t state = 0;
  EXPECT_EQ(TORPI_GetAdapterBeaconStatus(HandleAt(0), &state), 5u);
  EXPECT_EQ(state, 0xa5a5a5a5);
}

}  // namespace
