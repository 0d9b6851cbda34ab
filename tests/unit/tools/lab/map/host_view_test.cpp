#include "tools/lab/map/host_view.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/lab/map/text_tree.h"
#include "unit/tools/lab/recorded_host.h"

namespace {

using map::Health;
using recording::HostRecording;

struct HealthCase {
  const char* name;
  void (*change)(recording::ProtocolRecording& port);
  Health health;
  std::vector<std::string> findings;
};

const HealthCase kHealthCases[] = {
    {"all good", [](auto&) {}, Health::kGood, {}},
    {"link down",
     [](auto& port) { port.record.port_state = PortState::kOffline; },
     Health::kProblem,
     {"Link down"}},
    {"an unknown state",
     [](auto& port) { port.record.port_state = static_cast<PortState>(9); },
     Health::kProblem,
     {"Link down"}},
    {"nothing plugged in",
     [](auto& port) {
       port.record.port_state = PortState::kOffline;
       port.sfp.record = {};
     },
     Health::kIdle,
     {"Link down", "No module"}},
    {"a warm module",
     [](auto& port) { PutWord(port.sfp.record, kA2 + 96, 72 * 256); },
     Health::kWarning,
     {"Module temperature is 72.0 C, above its warning limit of 70.0 C"}},
    {"a hot module and no light",
     [](auto& port) {
       PutWord(port.sfp.record, kA2 + 96, 72 * 256);
       PutWord(port.sfp.record, kA2 + 104, 0);
     },
     Health::kProblem,
     {"Module rx power is 0.0000 mW, below its alarm limit of 0.0500 mW",
      "Module temperature is 72.0 C, above its warning limit of 70.0 C"}},
    {"a module that can't be read",
     [](auto& port) { port.sfp.result = 150; },
     Health::kIdle,
     {"Module not read: 150 (maintenance mode)"}},
    {"congestion", [](auto& port) { port.record.congestion_state = 1; }, Health::kWarning, {"Congested"}},
    {"congestion with an alarm",
     [](auto& port) {
       port.record.congestion_state = 1;
       port.record.congestion_severity = 0xF7;
     },
     Health::kProblem,
     {"Congested, severity alarm"}},
    {"a warning alone",
     [](auto& port) { port.record.congestion_severity = 0xF1; },
     Health::kWarning,
     {"Congestion signals, severity warning"}},
    {"the same byte on an adapter without congestion management",
     [](auto& port) {
       port.record.pci.device_id = 0x3B41;
       port.record.congestion_state = 1;
     },
     Health::kGood,
     {}},
    {"maintenance",
     [](auto& port) {
       port.record.driver_flags = kKnowsMaintenanceMode;
       port.record.port_flags = kMaintenanceState;
     },
     Health::kWarning,
     {"In maintenance mode"}},
    {"a foreign protocol",
     [](auto& port) { port.record.protocol_type = static_cast<ProtocolType>(2); },
     Health::kIdle,
     {"Neither FC nor FCoE"}},
};

TEST(View, JudgesAPort) {
  for (const HealthCase& row : kHealthCases) {
    HostRecording host = SmallHost();
    row.change(FirstPort(host));
    const map::PortView port = map::BuildView(host).adapters[0].ports[0];
    EXPECT_EQ(port.health, row.health) << row.name;
    std::vector<std::string> words;
    for (const map::Finding& finding : port.findings) words.push_back(finding.words);
    EXPECT_EQ(words, row.findings) << row.name;
  }
}

TEST(View, NamesAPortAndItsSurroundings) {
  const map::HostView view = map::BuildView(SmallHost());
  EXPECT_EQ(view.totals, "1 adapter, 2 ports, 1 target, 4 LUNs");
  EXPECT_EQ(view.health, "Ports: 2 good");
  const map::PortView& port = view.adapters[0].ports[0];
  EXPECT_EQ(port.title, "Port 0");
  EXPECT_EQ(port.speed, "16 Gbps");
  EXPECT_EQ(port.module, "LUMEN CO LC-32-SW, 36.5 C");
  EXPECT_EQ(port.switch_name, "10:00:00:00:00:00:00:01");
  EXPECT_EQ(port.fabric_name, "");  // the switch is the principal one
  EXPECT_EQ(port.totals, "1 target, 4 LUNs");
  ASSERT_EQ(port.targets.size(), 1u);
  EXPECT_EQ(port.targets[0].detail, "LABSTOR VA-2000, disk, online");
  EXPECT_EQ(view.adapters[0].ports[1].totals, "no targets");
}

TEST(View, SaysWhatIsWrongWithATarget) {
  HostRecording host = SmallHost();
  TargetEntry& target = FirstPort(host).targets[0].record;
  target.state_flags[2] = 0;
  EXPECT_EQ(map::BuildView(host).adapters[0].ports[0].targets[0].health, Health::kWarning);
  target.state_flags[0] = 0x40;
  EXPECT_EQ(map::BuildView(host).adapters[0].ports[0].targets[0].health, Health::kIdle);
}

// The port sees so many targets of 64 LUNs each.
HostRecording HostWithTargets(std::size_t count) {
  HostRecording host = SmallHost();
  FirstPort(host).targets.assign(count, TargetNumbered(1, 64));
  return host;
}

TEST(View, GroupsManyTargets) {
  const auto few = map::BuildView(HostWithTargets(map::kMostTargets)).adapters[0].ports[0].targets;
  EXPECT_EQ(few.size(), map::kMostTargets);
  EXPECT_FALSE(few[0].is_group);
  HostRecording host = HostWithTargets(256);
  FirstPort(host).targets[3].record.state_flags[2] = 0;
  const auto many = map::BuildView(host).adapters[0].ports[0].targets;
  ASSERT_EQ(many.size(), 2u);
  EXPECT_EQ(many[0].name, "1 target");
  EXPECT_EQ(many[0].detail, "LABSTOR VA-2000, disk, offline");
  EXPECT_EQ(many[1].name, "255 targets");
  EXPECT_EQ(many[1].luns, "16,320 LUNs");
}

TEST(View, CountsGroupsBeyondTheLast) {
  HostRecording host = HostWithTargets(20);
  for (std::size_t i = 0; i < 20; ++i) {
    SetText(FirstPort(host).targets[i].record.product_id, "P" + std::to_string(10 + i));
  }
  const auto rows = map::BuildView(host).adapters[0].ports[0].targets;
  ASSERT_EQ(rows.size(), map::kMostTargets);
  EXPECT_EQ(rows[14].detail, "LABSTOR P24, disk, online");
  EXPECT_EQ(rows[15].name, "5 targets");
  EXPECT_EQ(rows[15].luns, "320 LUNs");
  EXPECT_EQ(rows[15].detail, "of further kinds");
}

TEST(View, CountsPortsBeyondTheLast) {
  HostRecording host = SmallHost();
  host.adapters[0].ports.assign(70, PhysicalPort(0));
  const map::HostView view = map::BuildView(host);
  EXPECT_EQ(view.adapters[0].ports.size(), map::kMostPorts);
  EXPECT_EQ(view.adapters[0].more_ports, "and 6 more ports: 6 good");
}

TEST(View, CountsAdaptersBeyondTheLast) {
  HostRecording host = SmallHost();
  host.adapters.assign(40, host.adapters[0]);
  const map::HostView view = map::BuildView(host);
  EXPECT_EQ(view.adapters.size(), map::kMostAdapters);
  EXPECT_EQ(view.more_adapters, "and 8 more adapters with 16 ports");
  EXPECT_EQ(view.totals, "40 adapters, 80 ports, 40 targets, 160 LUNs");
}

TEST(View, CopesWithGaps) {
  HostRecording host = SmallHost();
  host.adapters[0].ports[1].protocols.clear();
  host.adapters.emplace_back();
  const map::HostView view = map::BuildView(host);
  EXPECT_EQ(view.adapters[0].ports[1].findings[0].words, "No protocols");
  EXPECT_EQ(view.adapters[1].facts, (std::vector<std::string>{"PCI bus 0x00", "No port list"}));
  EXPECT_EQ(map::BuildView(HostRecording{}).totals, "0 adapters, 0 ports, 0 targets, 0 LUNs");
}

TEST(Tree, HasItsTargetsInColumns) {
  HostRecording host = HostWithTargets(256);
  FirstPort(host).targets[3].record.state_flags[2] = 0;
  const std::string tree = map::TextTree(map::BuildView(host));
  const std::string columns =
      "      1 target     64 LUNs      LABSTOR VA-2000, disk, offline\n"
      "      255 targets  16,320 LUNs  LABSTOR VA-2000, disk, online\n";
  EXPECT_NE(tree.find(columns), std::string::npos) << tree;
}

TEST(Tree, IsIndented) {
  HostRecording host = SmallHost();
  host.adapters[0].ports[1].protocols[0].record.port_state = PortState::kOffline;
  EXPECT_EQ(map::TextTree(map::BuildView(host)),
            "Host: 1 adapter, 2 ports, 1 target, 4 LUNs\n"
            "Ports: 1 good, 1 problem\n"
            "\n"
            "Adapter ZX320 HZ00001: hazel, PCI bus 0x17, Board 46 C\n"
            "  Port 0, 21:00:00:0e:1e:00:00:00, link up at 16 Gbps, good\n"
            "    Module LUMEN CO LC-32-SW, 36.5 C\n"
            "    Switch 10:00:00:00:00:00:00:01, address 01:0a:00\n"
            "    1 target, 4 LUNs\n"
            "      Target 50:06:0b:00:00:00:00:01  4 LUNs  LABSTOR VA-2000, disk, online\n"
            "  Port 1, 21:00:00:0e:1e:00:00:01, link down, problem\n"
            "    problem: Link down\n"
            "    Module LUMEN CO LC-32-SW, 36.5 C\n"
            "    no targets\n");
}

}  // namespace
