// The sweep through a device library that lacks most calls, and through lists that don't end.
#include "tools/snapshot/capture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/device_library/calls.h"
#include "tools/snapshot/anonymise.h"

namespace {

using recording::Asked;
using recording::HostRecording;

const AdapterList* g_list = nullptr;
std::vector<std::string> g_calls;

}  // namespace

// The calls of every session, one that reads and one that fails. All others are missing.
LibraryStatus TORPI_Initialize(std::uint32_t, std::uint32_t) {
  g_calls = {"Initialize"};
  return 0;
}
LibraryStatus TORPI_SetToolID(std::uint32_t tool) {
  g_calls.push_back("SetToolID " + std::to_string(tool));
  return 0;
}
LibraryStatus TORPI_SetToolVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t, std::uint32_t) {
  g_calls.push_back("SetToolVersion " + std::to_string(major) + "." + std::to_string(minor));
  return 0;
}
LibraryStatus TORPI_Uninitialize() {
  g_calls.emplace_back("Uninitialize");
  return 0;
}
const AdapterList* TORPI_GetAdapterList() {
  g_calls.emplace_back("GetAdapterList");
  return g_list;
}
LibraryStatus TORPI_IsRebootRequired(std::uint8_t*) {
  return 7;
}
LibraryStatus TORPI_GetPersonalityType(const DeviceHandle*, std::uint8_t*) {
  return 0;
}

namespace {

// One host, record by record. The lists lead from one to the next unless a test says otherwise.
struct Records {
  Records() {
    g_list = &list;
    list.first = &adapter;
    adapter.ports = &ports;
    ports.first = &port;
    port.protocols = &protocols;
    protocols.first = &entry;
    entry.port_name = {{0x21, 0, 0, 0, 0, 0, 0, 1}};
  }
  ~Records() { g_list = nullptr; }

  AdapterList list{};
  AdapterEntry adapter{};
  PortList ports{};
  PhyPortEntry port{};
  ProtocolList protocols{};
  FCProtocolEntry entry{};
};

HostRecording Capture(std::vector<std::string>* cut = nullptr) {
  std::vector<std::string> sentences;
  HostRecording host = snapshot::Capture({.with_rdp = true}, sentences);
  if (cut != nullptr) {
    *cut = sentences;
  } else {
    EXPECT_EQ(sentences, std::vector<std::string>());
  }
  return host;
}

TEST(Capture, HostWithoutAList) {
  const HostRecording host = Capture();
  EXPECT_FALSE(host.has_list);
  EXPECT_EQ(g_calls, (std::vector<std::string>{"Initialize", "SetToolID 11", "SetToolVersion 1.9",
                                               "GetAdapterList", "Uninitialize"}));
}

TEST(Capture, MissingCallsAreNotedAndTheOthersMade) {
  const Records records;
  const HostRecording host = Capture();
  const recording::ProtocolRecording& port = host.adapters.at(0).ports.at(0).protocols.at(0);
  int missing = 0;
  VisitAnswers(port, [&](const char*, const char*, const auto& answer) {
    missing += answer.asked == Asked::kMissing ? 1 : 0;
  });
  EXPECT_EQ(missing, 22);
  EXPECT_EQ(port.personality.asked, Asked::kYes);
  EXPECT_EQ(host.boot_mode.asked, Asked::kMissing);
}

TEST(Capture, PresetsAreThoseOfTheProgram) {
  Records records;
  const HostRecording host = Capture();
  EXPECT_EQ(host.reboot_required.result, 7u);
  EXPECT_EQ(host.reboot_required.record, 1);
  EXPECT_EQ(host.adapters.at(0).ports.at(0).protocols.at(0).personality.record, kFcPersonality);
  records.entry.pci.vendor_id = 0x1c9e;
  records.entry.pci.device_id = 0x7122;  // ginkgo
  EXPECT_EQ(Capture().adapters.at(0).ports.at(0).protocols.at(0).personality.record, kCnaPersonality);
}

TEST(Capture, RecordsAreKeptWithoutAddresses) {
  Records records;
  records.adapter.reserved_352[3] = std::byte{9};
  TargetEntry target{};
  LunEntry luns[2] = {};
  luns[0].next = &luns[1];
  luns[1].number = 77;
  target.first_lun = luns;
  records.entry.first_target = &target;
  const HostRecording host = Capture();
  const recording::AdapterRecording& adapter = host.adapters.at(0);
  EXPECT_EQ(host.list.first, nullptr);
  EXPECT_EQ(adapter.record.ports, nullptr);
  EXPECT_EQ(adapter.record.reserved_352[3], std::byte{9});
  EXPECT_EQ(adapter.ports.at(0).record.protocols, nullptr);
  const recording::ProtocolRecording& entry = adapter.ports.at(0).protocols.at(0);
  EXPECT_EQ(entry.record.first_target, nullptr);
  EXPECT_EQ(entry.targets.at(0).record.first_lun, nullptr);
  EXPECT_EQ(entry.targets.at(0).luns.at(0).next, nullptr);
  EXPECT_EQ(entry.targets.at(0).luns.at(1).number, 77);
  EXPECT_EQ(entry.targets.at(0).statistics.asked, Asked::kMissing);
}

TEST(Capture, OtherProtocolsAreAskedNothing) {
  Records records;
  TargetEntry target{};
  records.entry.first_target = &target;
  records.entry.protocol_type = static_cast<ProtocolType>(2);
  const HostRecording host = Capture();
  const recording::ProtocolRecording& entry = host.adapters.at(0).ports.at(0).protocols.at(0);
  EXPECT_EQ(entry.personality.asked, Asked::kNo);
  EXPECT_TRUE(entry.targets.empty());
}

TEST(Capture, RingsAreCutOnce) {
  Records records;
  TargetEntry targets[2] = {};
  targets[0].next = &targets[1];
  targets[1].next = &targets[0];
  records.entry.first_target = targets;
  records.adapter.next = &records.adapter;
  std::vector<std::string> cut;
  const HostRecording host = Capture(&cut);
  EXPECT_EQ(host.adapters.size(), 1u);
  EXPECT_EQ(host.adapters[0].ports[0].protocols[0].targets.size(), 2u);
  EXPECT_EQ(
      cut, (std::vector<std::string>{
               "port 21:00:00:00:00:00:00:01: targets: the list leads back into itself; the rest is left out",
               "adapters: the list leads back into itself; the rest is left out"}));
}

TEST(Capture, LongListsAreCut) {
  Records records;
  std::vector<AdapterEntry> adapters(recording::kMostAdapters + 1);
  for (std::size_t i = 1; i < adapters.size(); ++i) adapters[i - 1].next = &adapters[i];
  records.list.first = adapters.data();
  std::vector<std::string> cut;
  EXPECT_EQ(Capture(&cut).adapters.size(), recording::kMostAdapters);
  EXPECT_EQ(cut, (std::vector<std::string>{"adapters: more than 256; the rest is left out"}));
}

TEST(Anonymise, GapsAndWhatFollowsATextAreZero) {
  Records records;
  records.adapter.serial_number = {"AB12345"};
  records.adapter.serial_number.bytes[20] = 'x';
  records.adapter.model = {"ZX320"};
  records.adapter.model.bytes[20] = 'x';
  records.adapter.reserved_124[0] = std::byte{1};
  records.entry.reserved_856[5] = std::byte{1};
  HostRecording host = Capture();
  snapshot::Anonymise(host);
  const recording::AdapterRecording& adapter = host.adapters.at(0);
  EXPECT_NE(adapter.record.serial_number.View(), "AB12345");
  EXPECT_EQ(adapter.record.serial_number.View().size(), 7u);
  EXPECT_EQ(adapter.record.serial_number.bytes[20], '\0');
  EXPECT_EQ(adapter.record.model.View(), "ZX320");
  EXPECT_EQ(adapter.record.model.bytes[20], '\0');
  EXPECT_EQ(adapter.record.reserved_124[0], std::byte{0});
  EXPECT_EQ(adapter.ports[0].protocols[0].record.reserved_856[5], std::byte{0});
  EXPECT_EQ(adapter.ports[0].protocols[0].record.port_name[0], 0x21);
  EXPECT_NE(adapter.ports[0].protocols[0].record.port_name[7], 1);
}

}  // namespace
