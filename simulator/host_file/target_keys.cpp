#include "host_file/target_keys.h"

#include <set>
#include <utility>

#include "base/named_number.h"
#include "base/text.h"
#include "host_file/congestion_keys.h"
#include "host_file/lun_keys.h"

namespace lab {
namespace {

constexpr NamedNumber kTypes[] = {{"fcp", 0}, {"nvme", 1}};
constexpr NamedNumber kProductTypes[] = {{"disk", 0},    {"tape", 1},  {"optical", 4}, {"cdrom", 5},
                                         {"changer", 8}, {"raid", 12}, {"saf-te", 13}};
constexpr NamedNumber kStates[] = {{"online", 0}, {"offline", 1}, {"unconfigured", 2}};
constexpr NamedNumber kRecords[] = {{"none", static_cast<std::uint32_t>(RemoteRecord::kNone)},
                                    {"current", static_cast<std::uint32_t>(RemoteRecord::kCurrent)},
                                    {"older", static_cast<std::uint32_t>(RemoteRecord::kOlder)}};
constexpr NamedNumber kRoles[] = {{"initiator", 1}, {"target", 2}, {"initiator-target", 3}, {"unknown", 0}};
constexpr NamedNumber kSessions[] = {{"none", static_cast<std::uint32_t>(Session::kNone)},
                                     {"pending", static_cast<std::uint32_t>(Session::kPending)},
                                     {"failed", static_cast<std::uint32_t>(Session::kFailed)},
                                     {"complete", static_cast<std::uint32_t>(Session::kComplete)},
                                     {"terminated", static_cast<std::uint32_t>(Session::kTerminated)}};
constexpr NamedNumber kLanes[] = {{"none", 0}, {"slow", 1}, {"normal", 2}, {"fast", 3}};

constexpr std::uint32_t kTargetNumbers = 65536;

constexpr const char* kVendor = "LABSTOR";
constexpr const char* kProduct = "VirtualArray";
constexpr const char* kFcpRevision = "2.10";
constexpr const char* kNvmeRevision = "2.10.4";

constexpr KeyRow<TargetEntry> kCongestionKeys[] = {
    {"state",
     [](const Value& value, TargetEntry& into) { value.CodeInto(kCongestionStates, into.congestion_state); }},
    {"virtual-lane",
     [](const Value& value, TargetEntry& into) { value.CodeInto(kLanes, into.virtual_lane); }},
    {"throttling",
     [](const Value& value, TargetEntry& into) { value.CodeInto(kThrottling, into.io_throttling); }},
    {"notifications",
     [](const Value& value, TargetEntry& into) { value.Into(into.congestion_notifications); }},
    {"link-event", [](const Value& value, TargetEntry& into) { value.Into(into.link_event_type); }},
    {"link-event-threshold",
     [](const Value& value, TargetEntry& into) { value.Into(into.link_event_threshold_ms); }},
    {"delivery-reason", [](const Value& value, TargetEntry& into) { value.Into(into.delivery_reason); }},
    {"peer-event",
     [](const Value& value, TargetEntry& into) { value.Into(into.peer_congestion_event_type); }},
    {"peer-event-period",
     [](const Value& value, TargetEntry& into) { value.Into(into.peer_congestion_event_period_ms); }},
    {"link-integrity-events",
     [](const Value& value, TargetEntry& into) { value.Into(into.link_integrity_events); }},
    {"seconds-since-event",
     [](const Value& value, TargetEntry& into) { value.Into(into.seconds_since_event); }},
};

constexpr NumberRow<TargetPortStatistics, std::uint32_t> kCounters[] = {
    {"link-failure", &TargetPortStatistics::link_failure},
    {"loss-of-sync", &TargetPortStatistics::loss_of_sync},
    {"loss-of-signal", &TargetPortStatistics::loss_of_signal},
    {"primitive-sequence-error", &TargetPortStatistics::primitive_sequence_error},
    {"invalid-transmission-word", &TargetPortStatistics::invalid_transmission_word},
    {"invalid-crc", &TargetPortStatistics::invalid_crc},
    {"delivery-failure-unknown", &TargetPortStatistics::delivery_failure_unknown},
    {"delivery-timeout", &TargetPortStatistics::delivery_timeout},
    {"delivery-unable-to-route", &TargetPortStatistics::delivery_unable_to_route},
    {"delivery-failure-device-specific", &TargetPortStatistics::delivery_failure_device_specific},
    {"peer-congestion-clear", &TargetPortStatistics::peer_congestion_clear},
    {"peer-congestion-lost-credit", &TargetPortStatistics::peer_congestion_lost_credit},
    {"peer-congestion-credit-stall", &TargetPortStatistics::peer_congestion_credit_stall},
    {"peer-congestion-oversubscription", &TargetPortStatistics::peer_congestion_oversubscription},
    {"peer-congestion-device-specific", &TargetPortStatistics::peer_congestion_device_specific},
    {"link-unknown-event", &TargetPortStatistics::link_unknown_event},
    {"link-device-specific-event", &TargetPortStatistics::link_device_specific_event},
};

// Byte 0 bit 6: known but not configured; byte 2 bit 1 and byte 4 bit 0: online.
void ReadState(const Value& value, TargetEntry& target) {
  const std::uint32_t state = value.Choice(kStates);
  target.state_flags[0] = state == 2 ? 0x40 : 0;
  target.state_flags[2] = state == 0 ? 0x02 : 0;
  target.state_flags[4] = state == 0 ? 0x01 : 0;
}

// `type` is read before all others, into the record.
constexpr KeyRow<TargetGroup> kTargetKeys[] = {
    {"type", ReadElsewhere},
    {"count",
     [](const Value& value, TargetGroup& into) {
       into.count = static_cast<std::uint32_t>(value.Number(1, value.GetLimits().targets));
     }},
    {"wwpn", [](const Value& value, TargetGroup& into) { value.Octets(into.first.port_name.octets); }},
    {"wwnn",
     [](const Value& value, TargetGroup& into) {
       value.Octets(into.first.node_name.octets);
       into.own_node_name = true;
     }},
    {"port-id", [](const Value& value, TargetGroup& into) { value.Octets(into.first.port_id.octets); }},
    {"number", [](const Value& value, TargetGroup& into) { value.Into(into.first.number); }},
    {"vendor", [](const Value& value, TargetGroup& into) { value.Into(into.first.vendor_id); }},
    {"product", [](const Value& value, TargetGroup& into) { value.Into(into.first.product_id); }},
    {"revision",
     [](const Value& value, TargetGroup& into) {
       IsNvmeTarget(into.first) ? value.Into(into.first.nvme_revision) : value.Into(into.first.fcp_revision);
     }},
    {"serial",
     [](const Value& value, TargetGroup& into) {
       value.Into(into.first.serial_number);
       into.own_serial = true;
     }},
    {"product-type",
     [](const Value& value, TargetGroup& into) { value.CodeInto(kProductTypes, into.first.product_type); }},
    {"nqn",
     [](const Value& value, TargetGroup& into) {
       value.Into(into.first.nqn);
       into.own_nqn = true;
     }},
    {"controller-id", [](const Value& value, TargetGroup& into) { value.Into(into.first.controller_id); }},
    {"state", [](const Value& value, TargetGroup& into) { ReadState(value, into.first); }},
    {"remote-record",
     [](const Value& value, TargetGroup& into) {
       into.remote.record = static_cast<RemoteRecord>(value.Choice(kRecords));
     }},
    {"remote-type",
     [](const Value& value, TargetGroup& into) {
       const std::uint32_t role = value.Choice(kRoles);
       into.remote.initiator = (role & 1) != 0;
       into.remote.target = (role & 2) != 0;
     }},
    {"session",
     [](const Value& value, TargetGroup& into) { value.CodeInto(kSessions, into.remote.session); }},
    {"secure", [](const Value& value, TargetGroup& into) { value.Into(into.remote.secure); }},
    {"congestion",
     [](const Value& value, TargetGroup& into) { ReadMap(value, kCongestionKeys, into.first); }},
    {"statistics",
     [](const Value& value, TargetGroup& into) { ReadNumbers(value, kCounters, into.state.statistics); }},
    {"link-speed",
     [](const Value& value, TargetGroup& into) { into.state.link_speed = value.Choice(kSpeedCodes); }},
    {"link-speed-code", [](const Value& value, TargetGroup& into) { value.Into(into.state.link_speed); }},
    {"luns", ReadElsewhere},
    {"namespaces", ReadElsewhere},
    {"lun-count",
     [](const Value& value, TargetGroup& into) {
       into.lun_count = static_cast<std::uint32_t>(value.Number(0, UINT32_MAX));
     }},
};

TargetGroup MakeGroup(const TargetDefaults& defaults, const FCProtocolEntry& entry, std::uint32_t number) {
  TargetGroup group;
  TargetEntry& target = group.first;
  target.port_name = {0x50, 0x00,
                      0x0e, static_cast<std::uint8_t>(0x11 + defaults.adapter),
                      0x00, static_cast<std::uint8_t>(defaults.port),
                      0x00, 0x00};
  CountUp(target.port_name, number);
  target.port_id = {static_cast<std::uint8_t>(0x02 + defaults.port), 0x01, 0x00};
  CountUp(target.port_id, number);
  target.number = static_cast<std::uint16_t>(number);
  target.controller_id = 1;
  StoreText(target.vendor_id, kVendor);
  StoreText(target.product_id, kProduct);
  StoreText(target.fcp_revision, kFcpRevision);
  StoreText(target.nvme_revision, kNvmeRevision);
  target.state_flags[2] = 0x02;
  target.state_flags[4] = 0x01;
  target.virtual_lane = 2;
  target.io_throttling = 1;
  if ((entry.driver_flags & kCurrentRemotePorts) == 0) group.remote.record = RemoteRecord::kOlder;
  group.state.link_speed = entry.port_speed != 0 ? entry.port_speed : defaults.speed;
  return group;
}

// LUNs begin with texts of their target, so they are read after its own keys. Each type of target has its
// word for them.
void ReadLunKeys(const Value& map, TargetGroup& group) {
  const char* const word = IsNvmeTarget(group.first) ? "namespaces" : "luns";
  for (const char* key : {"luns", "namespaces"}) {
    map.At(key, [&](const Value& value) {
      if (value.Key() != word) value.WrongKey(std::string(word) + " with this type of target");
      ReadLuns(value, group);
    });
  }
}

void CheckNames(const Value& map, const TargetGroup& group, std::set<std::uint64_t>& names) {
  for (std::uint32_t place = 0; place < group.count; ++place) {
    WorldWideName name = group.first.port_name;
    CountUp(name, place);
    if (names.insert(NameNumber(name)).second) continue;
    const Value given = map.AtOrHere("wwpn");
    return given.Wrong("wwpn: expected a name of its own, got '" + OctetText(name.octets) +
                       "' a second time");
  }
}

// Counts what the group adds to its port and to the whole host. Returns whether there is room for it.
bool CountGroup(const Value& map, const TargetGroup& group, const TargetSet& of_port, HostReading& host) {
  const Limits& limits = map.GetLimits();
  if (of_port.Count() + group.count > limits.targets) {
    map.Wrong("targets: expected at most " + std::to_string(limits.targets) + " of a port, got " +
              std::to_string(of_port.Count() + group.count));
    return false;
  }
  const bool had_room = host.targets <= limits.host_targets && host.luns <= limits.host_luns;
  host.targets += group.count;
  host.luns += group.LunsPerTarget() * group.count;
  const bool room_for_targets = host.targets <= limits.host_targets;
  if (room_for_targets && host.luns <= limits.host_luns) return true;
  const std::uint64_t limit = room_for_targets ? limits.host_luns : limits.host_targets;
  const char* const things = room_for_targets ? "luns" : "targets";
  if (had_room) {
    map.Wrong(std::string(things) + ": expected at most " + std::to_string(limit) + " in the whole host");
  }
  return false;
}

void ReadTarget(const Value& map, TargetGroup group, TargetSet& set, std::set<std::uint64_t>& names,
                HostReading& host) {
  if (!map.IsMap()) return map.Expected("a map");
  map.At("type", [&](const Value& type) {
    if (type.Choice(kTypes) == 1) group.first.state_flags[5] = 0x08;
  });
  ReadMap(map, kTargetKeys, group);
  if (!group.own_node_name) {
    group.first.node_name = group.first.port_name;
    group.first.node_name[1] ^= 0x10;
  }
  ReadLunKeys(map, group);
  if (group.first.number + group.count > kTargetNumbers) {
    map.AtOrHere("number").Wrong("number: expected target numbers up to 65535, got " +
                                 std::to_string(group.first.number + group.count - 1));
  }
  if (!CountGroup(map, group, set, host)) return;
  CheckNames(map, group, names);
  set.Add(std::move(group));
}

}  // namespace

void ReadTargets(const Value& value, const TargetDefaults& defaults, Entry& entry, HostReading& host) {
  std::set<std::uint64_t> names;
  value.EachOrOne([&](const Value& item) {
    ReadTarget(item, MakeGroup(defaults, entry.record, entry.targets.Count()), entry.targets, names, host);
  });
}

void ReadTargetSpeeds(const Value& map, TargetSet& targets) {
  map.EachKey([&](const Value& value) {
    WorldWideName name;
    if (!ReadOctets(value.Key(), name.octets)) return value.WrongKey("the name of a target");
    const std::uint32_t speed = value.Choice(kSpeedCodes);
    TargetState* const state = targets.Find(name);
    if (state == nullptr) return;
    state->link_speed = speed;
    state->changed = true;
  });
}

StateNode TargetSpeeds(const TargetSet& targets) {
  StateNode speeds;
  targets.Each([&](const TargetEntry& target, const TargetState& state) {
    if (!state.changed) return;
    for (const NamedNumber& speed : kSpeedCodes) {
      if (speed.number != state.link_speed) continue;
      speeds[OctetText(target.port_name.octets)] = speed.name;
    }
  });
  return speeds;
}

}  // namespace lab
