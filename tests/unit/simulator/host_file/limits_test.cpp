// How large a host can be.
#include "base/limits.h"

#include <gtest/gtest.h>

#include <string>

#include "host_file/host_keys.h"
#include "unit/simulator/marked_text.h"

namespace {

using lab::Host;
using lab::Limits;

constexpr Limits kSmall = [] {
  Limits limits;
  limits.adapters = 2;
  limits.ports = 3;
  limits.virtual_ports = 2;
  limits.targets = 4;
  limits.luns = 8;
  limits.faults = 2;
  limits.host_ports = 5;
  limits.host_targets = 6;
  limits.host_luns = 20;
  return limits;
}();

struct LargeHost {
  const char* name;
  const char* good;  // as large as can be
  const char* bad;   // one more, with "^" ahead of the mistake
  const char* mistake;
};

const LargeHost kHosts[] = {
    {"Adapters", "adapters: [{family: elm}, {family: elm}]",
     "adapters: [{family: elm}, {family: elm}, ^{family: elm}]",
     "adapters: expected at most 2 adapters, got 3"},
    {"Ports", "adapters: [{family: elm, ports: [{}, {}, {}]}]",
     "adapters: [{family: elm, ports: [{}, {}, {}, ^{}]}]", "ports: expected at most 3 ports, got 4"},
    {"VirtualPorts", "adapters: [{family: elm, ports: [{npiv: [{}, {}]}]}]",
     "adapters: [{family: elm, ports: [{npiv: [{}, {}, ^{}]}]}]",
     "npiv: expected at most 2 virtual ports, got 3"},
    {"TargetsOfAnItem", "adapters: [{family: elm, ports: [{targets: {count: 4}}]}]",
     "adapters: [{family: elm, ports: [{targets: {count: ^5}}]}]",
     "count: expected a number from 1 to 4, got '5'"},
    {"TargetsOfAPort", "adapters: [{family: elm, ports: [{targets: [{count: 3}, {}]}]}]",
     "adapters: [{family: elm, ports: [{targets: [{count: 3}, ^{count: 2}]}]}]",
     "targets: expected at most 4 of a port, got 5"},
    {"LunsOfATarget", "adapters: [{family: elm, ports: [{targets: {luns: [0-6, 9]}}]}]",
     "adapters: [{family: elm, ports: [{targets: {luns: ^[0-6, 9, 8]}}]}]",
     "luns: expected at most 8 of a target, got 9"},
    {"Faults", "faults: [{call: TORPI_GetVpd, result: 1, once: true}, {call: TORPI_GetVpd, result: 2}]",
     "faults: [{call: TORPI_GetVpd, result: 1, once: true}, {call: TORPI_GetVpd, result: 2}, ^{}]",
     "faults: expected at most 2 faults, got 3"},
    {"PortsOfTheHost", "adapters: [{family: elm, ports: [{}, {}, {npiv: [{}, {}]}]}]",
     "adapters: [{family: elm, ports: [{}, {}, {npiv: [{}, {}]}]}, {family: elm, ports: [^{}]}]",
     "ports: expected at most 5 in the whole host"},
    {"TargetsOfTheHost", "adapters: [{family: elm, ports: [{targets: {count: 4}}, {targets: {count: 2}}]}]",
     "adapters: [{family: elm, ports: [{targets: {count: 4}}, {targets: ^{count: 3}}]}]",
     "targets: expected at most 6 in the whole host"},
    {"LunsOfTheHost", "adapters: [{family: elm, ports: [{targets: [{count: 2, luns: 0-7}, {luns: 0-3}]}]}]",
     "adapters: [{family: elm, ports: [{targets: [{count: 2, luns: 0-7}, ^{luns: 0-4}]}]}]",
     "luns: expected at most 20 in the whole host"},
};

class HostLimit : public testing::TestWithParam<LargeHost> {};

TEST_P(HostLimit, HasAMessage) {
  Host good;
  EXPECT_EQ(ReadHost("a.yaml", GetParam().good, good, kSmall), "");
  const MarkedText bad = WithoutMark(GetParam().bad);
  Host host;
  EXPECT_EQ(ReadHost("a.yaml", bad.text, host, kSmall), "a.yaml" + bad.place + ": " + GetParam().mistake);
}

INSTANTIATE_TEST_SUITE_P(HostFile, HostLimit, testing::ValuesIn(kHosts),
                         [](const auto& test) { return test.param.name; });

TEST(HostLimits, TwoMillionLunsOfAPortFit) {
  Host host;
  EXPECT_EQ(
      ReadHost("a.yaml", "adapters: [{family: elm, ports: [{targets: {count: 128, luns: 0-16383}}]}]", host),
      "");
  EXPECT_EQ(host.adapters[0].ports[0].entries[0].targets.LunCount(), 2097152u);
}

// Aliases that make the largest host many times over.
TEST(HostLimits, LargeHostIsRefusedBeforeItIsBuilt) {
  std::string text = "adapters:\n  - &a {family: elm, ports: [&p {targets: {count: 4096, luns: 0-16383}}";
  for (int i = 1; i < 64; ++i) text += ", *p";
  text += "]}\n";
  for (int i = 1; i < 16; ++i) text += "  - *a\n";
  Host host;
  EXPECT_NE(ReadHost("a.yaml", text, host).find(": luns: expected at most 4194304 in the whole host"),
            std::string::npos);
}

}  // namespace
