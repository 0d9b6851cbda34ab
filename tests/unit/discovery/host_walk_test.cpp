#include "discovery/host_walk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/unit_host_records.h"

namespace {

// The addresses of the entries that a walk visits, in its order.
template <class Entry>
std::vector<const Entry*> Visited(const Chain<Entry>& chain) {
  std::vector<const Entry*> visited;
  for (const Entry& entry : chain) visited.push_back(&entry);
  return visited;
}

TEST(HostWalk, VisitsAdaptersInTheOrderOfTheirChain) {
  HostRecords host;
  const AdapterEntry* const first = &host.AddAdapter("M1", "S1");
  const AdapterEntry* const second = &host.AddAdapter("M2", "S2");
  const AdapterEntry* const third = &host.AddAdapter("M3", "S3");
  EXPECT_EQ(Visited(AdaptersOf(*host.List())), (std::vector{first, second, third}));
}

TEST(HostWalk, GoesByTheChainAndNotByTheCount) {
  HostRecords host;
  const AdapterEntry* const adapter = &host.AddAdapter("M1", "S1");
  AdapterList list = *host.List();
  for (const std::uint32_t count : {0u, 2u, 0xFFFFFFFFu}) {
    list.count = count;
    EXPECT_EQ(Visited(AdaptersOf(list)), std::vector{adapter});
  }
}

TEST(HostWalk, VisitsNothingInAnEmptyList) {
  const HostRecords host;
  EXPECT_TRUE(Visited(AdaptersOf(*host.List())).empty());
}

TEST(HostWalk, VisitsPortsAndProtocolsInTheOrderOfTheirChains) {
  HostRecords host;
  AdapterEntry& adapter = host.AddAdapter("M1", "S1");
  PhyPortEntry& port_7 = host.AddPort(adapter, 7);
  PhyPortEntry& port_2 = host.AddPort(adapter, 2);
  const FCProtocolEntry* const first = &host.AddProtocol(port_7, 5);
  const FCProtocolEntry* const second = &host.AddProtocol(port_7, 0);
  EXPECT_EQ(Visited(PortsOf(adapter)), (std::vector<const PhyPortEntry*>{&port_7, &port_2}));
  EXPECT_EQ(Visited(ProtocolsOf(port_7)), (std::vector{first, second}));
  EXPECT_TRUE(Visited(ProtocolsOf(port_2)).empty());
}

TEST(HostWalk, SkipsNullsAtEveryLevel) {
  AdapterEntry adapter = {};
  EXPECT_TRUE(Visited(PortsOf(adapter)).empty());
  const PortList no_ports = {};
  adapter.ports = &no_ports;
  EXPECT_TRUE(Visited(PortsOf(adapter)).empty());

  PhyPortEntry port = {};
  EXPECT_TRUE(Visited(ProtocolsOf(port)).empty());
  const ProtocolList no_protocols = {};
  port.protocols = &no_protocols;
  EXPECT_TRUE(Visited(ProtocolsOf(port)).empty());
}

TEST(IsFcEntry, IsTrueForTypesZeroAndOne) {
  FCProtocolEntry entry = {};
  for (const std::uint32_t type : {0u, 1u}) {
    entry.protocol_type = static_cast<ProtocolType>(type);
    EXPECT_TRUE(IsFcEntry(entry)) << type;
  }
  for (const std::uint32_t type : {2u, 3u, 0x100u, 0x10000u, 0xFFFFFFFFu}) {
    entry.protocol_type = static_cast<ProtocolType>(type);
    EXPECT_FALSE(IsFcEntry(entry)) << type;
  }
}

TEST(HostWalk, VisitsTargetsAndLunsInTheOrderOfTheirChains) {
  HostRecords host;
  FCProtocolEntry& port = host.AddFcPort(host.AddAdapter("M1", "S1"), 0);
  EXPECT_TRUE(Visited(TargetsOf(port)).empty());
  TargetEntry& first = host.AddTarget(port, 0x11);
  TargetEntry& second = host.AddTarget(port, 0x22);
  EXPECT_EQ(Visited(TargetsOf(port)), (std::vector<const TargetEntry*>{&first, &second}));

  EXPECT_TRUE(Visited(LunsOf(first)).empty());
  const LunEntry* const lun_7 = &host.AddLun(first, 7);
  const LunEntry* const lun_0 = &host.AddLun(first, 0);
  EXPECT_EQ(Visited(LunsOf(first)), (std::vector{lun_7, lun_0}));
  EXPECT_TRUE(Visited(LunsOf(second)).empty());
}

// A host with every kind of gap, and the entries that are left.
class Gaps : public testing::Test {
 protected:
  struct Visit {
    const AdapterEntry* adapter;
    const PhyPortEntry* port;
    const FCProtocolEntry* entry;
    bool operator==(const Visit&) const = default;
  };

  Gaps() {
    host_.AddAdapter("no", "ports").ports = nullptr;
    host_.AddAdapter("empty", "ports");
    AdapterEntry& first = host_.AddAdapter("M1", "S1");
    host_.AddPort(first, 0).protocols = nullptr;
    PhyPortEntry& port_1 = host_.AddPort(first, 1);
    host_.AddProtocol(port_1, 2);
    expected_.push_back({&first, &port_1, &host_.AddProtocol(port_1, 1)});
    host_.AddProtocol(port_1, 0xFFFFFFFF);
    expected_.push_back({&first, &port_1, &host_.AddProtocol(port_1, 0)});
    host_.AddPort(first, 2);
    AdapterEntry& second = host_.AddAdapter("M2", "S2");
    PhyPortEntry& port_0 = host_.AddPort(second, 0);
    expected_.push_back({&second, &port_0, &host_.AddProtocol(port_0, 0)});
  }

  HostRecords host_;
  std::vector<Visit> expected_;
};

TEST_F(Gaps, AreSkippedInSilence) {
  std::vector<Visit> visits;
  EXPECT_FALSE(VisitFcEntries(*host_.List(), [&](const auto& adapter, const auto& port, const auto& entry) {
    visits.push_back({&adapter, &port, &entry});
    return false;
  }));
  EXPECT_EQ(visits, expected_);
}

TEST_F(Gaps, VisitEndsWhereItIsAsked) {
  std::vector<Visit> visits;
  EXPECT_TRUE(VisitFcEntries(*host_.List(), [&](const auto& adapter, const auto& port, const auto& entry) {
    visits.push_back({&adapter, &port, &entry});
    return visits.size() == 2;
  }));
  expected_.pop_back();
  EXPECT_EQ(visits, expected_);
}

TEST(VisitFcEntries, VisitsNothingInAnEmptyList) {
  const HostRecords host;
  EXPECT_FALSE(VisitFcEntries(*host.List(), [](const auto&, const auto&, const auto&) { return true; }));
}

}  // namespace
