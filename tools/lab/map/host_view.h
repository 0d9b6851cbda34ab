// What a map shows of a host, in words, ready to be drawn or written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "recording/recording.h"

namespace map {

// From good to bad. Idle is what nothing is plugged into or set up for.
enum class Health : std::uint8_t { kGood, kIdle, kWarning, kProblem };

const char* HealthWord(Health health);

// Something worth a word: "Link down".
struct Finding {
  Health health;
  std::string words;
};

// One target, or a group of them that look the same. All texts are clean.
struct TargetRow {
  Health health = Health::kGood;
  bool is_group = false;
  std::string name;    // its port name; of a group "256 targets"
  std::string luns;    // "16,384 LUNs"
  std::string detail;  // "LABSTOR VA-2000, disk, online"
};

struct PortView {
  bool is_virtual = false;
  bool link_up = false;
  bool has_link = true;  // false: a port without a protocol that has links
  Health health = Health::kGood;
  std::string title;              // "Port 0"
  std::string name;               // its port name, or empty
  std::string speed;              // "16 Gbps", or empty while the link is down
  std::string module;             // "SORVEX OPTICS SX-F16-SW, 36.5 C", or empty
  std::string switch_name;        // of the switch that it is plugged into, or empty
  std::string fabric_name;        // of the fabric's principal switch where that is another one, or empty
  std::string address;            // "01:0a:00", or empty
  std::vector<Finding> findings;  // the worst first; empty for a good port
  std::vector<TargetRow> targets;
  std::string totals;  // "3 targets, 7 LUNs"
};

struct AdapterView {
  std::string model, serial;       // either may be empty
  std::vector<std::string> facts;  // "elm, PCI bus 0x05"
  std::vector<PortView> ports;
  std::string more_ports;  // "and 12 more ports: 10 good, 2 problem", or empty
};

struct HostView {
  std::string totals;  // "7 adapters, 10 ports, 28 targets, 95 LUNs"
  std::string health;  // "7 ports good, 1 idle, 1 warning, 1 problem"
  std::vector<AdapterView> adapters;
  std::string more_adapters;  // "and 3 more adapters with 6 ports", or empty
};

// Limits that keep the map of a large host readable. What is beyond them is counted.
inline constexpr std::size_t kMostAdapters = 32;
inline constexpr std::size_t kMostPorts = 64;    // of the host, virtual ones included
inline constexpr std::size_t kManyPorts = 16;    // a host with more of them shows few targets for each
inline constexpr std::size_t kMostTargets = 16;  // rows of one port; more targets are grouped
inline constexpr std::size_t kFewTargets = 4;

HostView BuildView(const recording::HostRecording& host);

}  // namespace map
