#include "device/congestion_setup.h"

#include "device/host.h"

namespace lab {
namespace {

constexpr auto kTargetElement = static_cast<StatisticsElementKind>(0x01);
constexpr auto kOtherElement = static_cast<StatisticsElementKind>(0x02);
constexpr WorldWideName kDepartedNode = {0x50, 0x10, 0x0e, 0xff, 0, 0, 0, 0};
constexpr WorldWideName kDepartedPort = {0x50, 0x00, 0x0e, 0xff, 0, 0, 0, 0};

void SetNames(SCMRStatisticsEntry& element, const WorldWideName& node, const WorldWideName& port) {
  element.node_name = node;
  element.port_name = port;
}

void Add(StatisticsList& list, const SCMRStatisticsEntry& counters, StatisticsElementKind kind,
         const WorldWideName& node, const WorldWideName& port) {
  SCMRStatisticsEntry& element = list.emplace_back(counters);
  SetNames(element, node, port);
  element.kind = kind;
}

void AddPort(StatisticsList& list, const Entry& entry) {
  const FCProtocolEntry& port = entry.record;
  if (entry.congestion.port_element == PortElement::kAbsent) return;
  if (entry.congestion.port_element == PortElement::kSecond) {
    Add(list, {}, kOtherElement, port.node_name, port.port_name);
  }
  Add(list, entry.congestion.port, StatisticsElementKind::kPhysicalPort, port.node_name, port.port_name);
}

void AddTargets(StatisticsList& list, const Entry& entry) {
  const auto& counters = entry.congestion.targets;
  entry.targets.Each([&](const TargetEntry& target, const TargetState&) {
    const auto found = counters.find(NameNumber(target.port_name));
    Add(list, found == counters.end() ? SCMRStatisticsEntry{} : found->second, kTargetElement,
        target.node_name, target.port_name);
  });
}

}  // namespace

void FillCongestion(FCProtocolEntry& entry) {
  constexpr std::uint8_t kCompletedWithBrocade = 3;
  constexpr std::uint8_t kOperational = 1;
  constexpr std::uint8_t kNotThrottled = 1;
  entry.fabric_connection_flags = kCompletedWithBrocade;
  entry.virtual_lane = kOperational;
  entry.io_throttling = kNotThrottled;
}

std::unique_ptr<StatisticsList> MakeStatisticsList(const Entry& entry) {
  auto list = std::make_unique<StatisticsList>();
  list->reserve(std::size_t{2} + entry.targets.Count() + entry.congestion.departed);
  AddPort(*list, entry);
  AddTargets(*list, entry);
  for (std::uint32_t number = 0; number < entry.congestion.departed; ++number) {
    Add(*list, {}, kTargetElement, kDepartedNode, kDepartedPort);
    CountUp(list->back().node_name, number);
    CountUp(list->back().port_name, number);
  }
  for (std::size_t i = 1; i < list->size(); ++i) (*list)[i - 1].next = &(*list)[i];
  return list;
}

void ClearStatistics(CongestionSetup& setup) {
  setup.port = {};
  setup.targets.clear();
  setup.cleared = true;
}

}  // namespace lab
