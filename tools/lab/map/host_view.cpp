#include "tools/lab/map/host_view.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "framework/device_library/families.h"
#include "tools/lab/view/module.h"
#include "tools/lab/view/text.h"
#include "tools/lab/view/words.h"

namespace map {
namespace {

using recording::AdapterRecording;
using recording::Asked;
using recording::HostRecording;
using recording::PhyPortRecording;
using recording::ProtocolRecording;
using recording::TargetRecording;

// Targets.

std::string ProductType(const TargetEntry& target) {
  for (const view::CodeWord& row : view::kProductTypes) {
    if (row.code == target.product_type) return row.word;
  }
  return "device";
}

// Targets that differ in nothing of this are one group. The worst is the first.
struct Looks {
  Health health;
  std::string detail;
  bool is_nvme;

  bool operator<(const Looks& other) const {
    if (health != other.health) return health > other.health;
    return std::tie(detail, is_nvme) < std::tie(other.detail, other.is_nvme);
  }
};

Looks LooksOf(const FCProtocolEntry& fc, const TargetEntry& target) {
  Looks looks = {Health::kGood, "", IsNvmeTarget(target)};
  if (!IsOnline(target)) looks.health = IsUnconfigured(target) ? Health::kIdle : Health::kWarning;
  std::string state = view::TargetStateText(target);
  if (HasCongestionManagement(fc.pci) && target.congestion_state == view::kCongested) {
    looks.health = std::max(looks.health, Health::kWarning);
    state += ", congested";
  }
  const std::string product[] = {view::CleanText(target.vendor_id.View()),
                                 view::CleanText(target.product_id.View())};
  const std::string parts[] = {view::Joined(product, " "),
                               (looks.is_nvme ? "NVMe " : "") + ProductType(target), state};
  looks.detail = view::Joined(parts, ", ");
  return looks;
}

std::string LunText(std::size_t count, bool is_nvme) {
  return view::Counted(count, is_nvme ? "namespace" : "LUN");
}

std::vector<TargetRow> SingleRows(const ProtocolRecording& port) {
  std::vector<TargetRow> rows;
  for (const TargetRecording& target : port.targets) {
    Looks looks = LooksOf(port.record, target.record);
    rows.push_back({looks.health, false, target.record.port_name.Text(),
                    LunText(target.luns.size(), looks.is_nvme), std::move(looks.detail)});
  }
  return rows;
}

struct Group {
  std::size_t targets = 0;
  std::size_t luns = 0;
};

std::vector<TargetRow> GroupRows(const ProtocolRecording& port, std::size_t most) {
  std::map<Looks, Group> groups;
  for (const TargetRecording& target : port.targets) {
    Group& group = groups[LooksOf(port.record, target.record)];
    ++group.targets;
    group.luns += target.luns.size();
  }
  std::vector<TargetRow> rows;
  Group rest;
  for (const auto& [looks, group] : groups) {
    if (rows.size() + 1 < most || groups.size() == most) {
      rows.push_back({looks.health, true, view::Counted(group.targets, "target"),
                      LunText(group.luns, looks.is_nvme), looks.detail});
    } else {
      rest.targets += group.targets;
      rest.luns += group.luns;
    }
  }
  if (rest.targets > 0) {
    rows.push_back({Health::kIdle, true, view::Counted(rest.targets, "target"), LunText(rest.luns, false),
                    "of further kinds"});
  }
  return rows;
}

// Counts of a port, an adapter or the host.
struct Totals {
  std::size_t adapters = 0, ports = 0, targets = 0, luns = 0;
  std::array<std::size_t, 4> by_health{};
};

std::string HealthText(const Totals& totals) {
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < totals.by_health.size(); ++i) {
    if (totals.by_health[i] == 0) continue;
    parts.push_back(view::Grouped(totals.by_health[i]) + ' ' + HealthWord(static_cast<Health>(i)));
  }
  return view::Joined(parts, ", ");
}

void CountPort(Totals& totals, const ProtocolRecording* port, Health health) {
  ++totals.ports;
  ++totals.by_health[static_cast<std::size_t>(health)];
  if (port == nullptr) return;
  totals.targets += port->targets.size();
  for (const TargetRecording& target : port->targets) totals.luns += target.luns.size();
}

// Ports.

void FindModule(const ProtocolRecording& port, PortView& shown) {
  if (port.sfp.asked != Asked::kYes || shown.is_virtual) return;
  if (!port.sfp.Good()) {
    shown.findings.push_back({Health::kIdle, "Module not read: " + view::ResultText(port.sfp.result)});
    return;
  }
  const view::Module module = view::ReadModule(port.sfp.record);
  if (!module.present) {
    shown.findings.push_back({Health::kIdle, "No module"});
    return;
  }
  shown.module = view::ModuleName(module);
  if (!module.measures) return;
  shown.module += ", " + view::ValueText(view::kTemperature, module.measured[view::kTemperature].value);
  for (std::size_t i = 0; i < view::kQuantities; ++i) {
    const view::Measurement& measured = module.measured[i];
    if (measured.limit == view::Limit::kWithin) continue;
    const Health health = measured.limit == view::Limit::kAlarm ? Health::kProblem : Health::kWarning;
    shown.findings.push_back({health, "Module " + view::LimitText(static_cast<view::Quantity>(i), measured)});
  }
}

bool IsCageEmpty(const ProtocolRecording& port) {
  return port.sfp.Good() && !view::ReadModule(port.sfp.record).present;
}

void FindLink(const ProtocolRecording& port, PortView& shown) {
  if (shown.link_up) return;
  shown.findings.push_back({IsCageEmpty(port) ? Health::kIdle : Health::kProblem, "Link down"});
}

void FindCongestion(const FCProtocolEntry& fc, PortView& shown) {
  if (!HasCongestionManagement(fc.pci) || !shown.link_up) return;
  const bool congested = fc.congestion_state == view::kCongested;
  const bool alarm = fc.congestion_severity == view::kAlarmSeverity;
  const bool warning = fc.congestion_severity == view::kWarningSeverity;
  if (!congested && !alarm && !warning) return;
  std::string words = congested ? "Congested" : "Congestion signals";
  if (alarm || warning) words += std::string(", severity ") + (alarm ? "alarm" : "warning");
  shown.findings.push_back({alarm ? Health::kProblem : Health::kWarning, std::move(words)});
}

void FindState(const FCProtocolEntry& fc, PortView& shown) {
  if (IsInMaintenanceMode(fc)) shown.findings.push_back({Health::kWarning, "In maintenance mode"});
}

void SortFindings(PortView& shown) {
  std::stable_sort(shown.findings.begin(), shown.findings.end(),
                   [](const Finding& one, const Finding& other) { return one.health > other.health; });
  if (!shown.findings.empty()) shown.health = shown.findings.front().health;
}

// A bad target does not make its port bad: the row says it.
PortView ViewOf(const PhyPortRecording& physical, const ProtocolRecording* port, std::size_t most_targets) {
  PortView shown;
  shown.title = "Port " + std::to_string(physical.record.number);
  if (port == nullptr) {
    shown.has_link = false;
    shown.findings.push_back({Health::kIdle, "No protocols"});
    SortFindings(shown);
    return shown;
  }
  const FCProtocolEntry& fc = port->record;
  shown.is_virtual = IsVirtualPort(fc);
  if (shown.is_virtual) shown.title = "Virtual port of port " + std::to_string(physical.record.number);
  shown.name = fc.port_name.IsZero() ? "" : fc.port_name.Text();
  if (fc.protocol_type != ProtocolType::kFc && fc.protocol_type != ProtocolType::kFcoe) {
    shown.has_link = false;
    shown.findings.push_back({Health::kIdle, "Neither FC nor FCoE"});
    SortFindings(shown);
    return shown;
  }
  shown.link_up = IsLinkUp(fc);
  if (shown.link_up) {
    shown.speed = view::SpeedText(fc.port_speed);
    if (!fc.adjacent_fabric_name.IsZero()) shown.switch_name = fc.adjacent_fabric_name.Text();
    const bool is_other = fc.principal_fabric_name != fc.adjacent_fabric_name;
    if (is_other && !fc.principal_fabric_name.IsZero()) shown.fabric_name = fc.principal_fabric_name.Text();
    shown.address = fc.port_id.Text();
  }
  FindLink(*port, shown);
  FindModule(*port, shown);
  FindCongestion(fc, shown);
  FindState(fc, shown);
  SortFindings(shown);
  Totals totals;
  CountPort(totals, port, shown.health);
  shown.totals = totals.targets == 0
                     ? "no targets"
                     : view::Counted(totals.targets, "target") + ", " + view::Counted(totals.luns, "LUN");
  shown.targets = port->targets.size() > most_targets ? GroupRows(*port, most_targets) : SingleRows(*port);
  return shown;
}

// Adapters.

// The first reading of any port: they all ask the same board.
std::optional<int> BoardCelsius(const AdapterRecording& adapter) {
  for (const PhyPortRecording& physical : adapter.ports) {
    for (const ProtocolRecording& port : physical.protocols) {
      if (port.temperature.Good()) return port.temperature.record.celsius;
    }
  }
  return std::nullopt;
}

const ProtocolRecording* FirstProtocol(const AdapterRecording& adapter) {
  for (const PhyPortRecording& physical : adapter.ports) {
    if (!physical.protocols.empty()) return &physical.protocols.front();
  }
  return nullptr;
}

std::vector<std::string> FactsOf(const AdapterRecording& adapter) {
  std::vector<std::string> facts;
  const ProtocolRecording* const first = FirstProtocol(adapter);
  const std::string place[] = {first == nullptr ? "" : view::FamilyName(first->record.pci),
                               "PCI bus " + view::HexNumber(adapter.record.bus_id, 2)};
  facts.push_back(view::Joined(place, ", "));
  const std::string firmware =
      first == nullptr ? "" : view::CleanText(first->record.running_firmware_version.View());
  if (!firmware.empty()) facts.push_back("Firmware " + firmware);
  const std::string driver = first == nullptr ? "" : view::CleanText(first->record.driver_version.View());
  if (!driver.empty()) facts.push_back("Driver " + driver);
  if (const auto celsius = BoardCelsius(adapter)) facts.push_back("Board " + std::to_string(*celsius) + " C");
  if (!adapter.has_ports) facts.emplace_back("No port list");
  if (adapter.has_ports && adapter.ports.empty()) facts.emplace_back("No ports");
  return facts;
}

// Builds the view of one adapter after the other, within the limits of the whole host.
class Builder {
 public:
  explicit Builder(const HostRecording& host) : most_targets_(MostTargets(host)) {}

  void Add(const AdapterRecording& adapter) {
    ++totals_.adapters;
    const std::size_t ports_before = totals_.ports;
    AdapterView shown = ViewOf(adapter);
    if (host_.adapters.size() < kMostAdapters) {
      host_.adapters.push_back(std::move(shown));
    } else {
      ++hidden_.adapters;
      hidden_.ports += totals_.ports - ports_before;
    }
  }

  HostView Take() {
    const std::string counts[] = {
        view::Counted(totals_.adapters, "adapter"), view::Counted(totals_.ports, "port"),
        view::Counted(totals_.targets, "target"), view::Counted(totals_.luns, "LUN")};
    host_.totals = view::Joined(counts, ", ");
    host_.health = totals_.ports == 0 ? "no ports" : "Ports: " + HealthText(totals_);
    if (hidden_.adapters > 0) {
      host_.more_adapters = "and " + view::Counted(hidden_.adapters, "more adapter") + " with " +
                            view::Counted(hidden_.ports, "port");
    }
    return std::move(host_);
  }

 private:
  static std::size_t MostTargets(const HostRecording& host) {
    std::size_t ports = 0;
    for (const AdapterRecording& adapter : host.adapters) {
      for (const PhyPortRecording& physical : adapter.ports) {
        ports += std::max<std::size_t>(physical.protocols.size(), 1);
      }
    }
    return ports > kManyPorts ? kFewTargets : kMostTargets;
  }

  AdapterView ViewOf(const AdapterRecording& adapter) {
    AdapterView shown;
    shown.model = view::CleanText(adapter.record.model.View());
    shown.serial = view::CleanText(adapter.record.serial_number.View());
    shown.facts = FactsOf(adapter);
    Totals hidden;
    for (const PhyPortRecording& physical : adapter.ports) {
      for (const ProtocolRecording& port : physical.protocols) AddPort(shown, hidden, physical, &port);
      if (physical.protocols.empty()) AddPort(shown, hidden, physical, nullptr);
    }
    if (hidden.ports > 0) {
      shown.more_ports = "and " + view::Counted(hidden.ports, "more port") + ": " + HealthText(hidden);
    }
    return shown;
  }

  void AddPort(AdapterView& shown, Totals& hidden, const PhyPortRecording& physical,
               const ProtocolRecording* port) {
    PortView view = map::ViewOf(physical, port, most_targets_);
    CountPort(totals_, port, view.health);
    if (totals_.ports <= kMostPorts) {
      shown.ports.push_back(std::move(view));
    } else {
      CountPort(hidden, port, view.health);
    }
  }

  std::size_t most_targets_;
  Totals totals_, hidden_;
  HostView host_;
};

}  // namespace

const char* HealthWord(Health health) {
  constexpr const char* kWords[] = {"good", "idle", "warning", "problem"};
  return kWords[static_cast<std::size_t>(health)];
}

HostView BuildView(const HostRecording& host) {
  Builder builder(host);
  for (const AdapterRecording& adapter : host.adapters) builder.Add(adapter);
  return builder.Take();
}

}  // namespace map
