#include "host_file/congestion_keys.h"

#include "base/text.h"

namespace lab {
namespace {

constexpr NamedNumber kNotifications[] = {{"congestion", 1}, {"delivery", 2}, {"link-integrity", 4}};
constexpr NamedNumber kLinkEvents[] = {
    {"unknown", 0},        {"link-failure", 1},     {"loss-of-sync", 2},
    {"loss-of-signal", 3}, {"protocol-error", 4},   {"invalid-transmission-word", 5},
    {"invalid-crc", 6},    {"device-specific", 15},
};
constexpr NamedNumber kDeliveryReasons[] = {
    {"unknown", 0}, {"timeout", 1}, {"unable-to-route", 2}, {"device-specific", 15}};
constexpr NamedNumber kEvents[] = {
    {"clear", 0}, {"lost-credit", 1}, {"credit-stall", 2}, {"oversubscription", 3}, {"device-specific", 15},
};
constexpr NamedNumber kSeverities[] = {{"none", 0}, {"warning", 0xF1}, {"alarm", 0xF7}};
constexpr NamedNumber kFabricFlags[] = {{"completed", 1}, {"brocade", 2}, {"cisco", 4}};
constexpr NamedNumber kLanes[] = {{"none", 0}, {"operational", 1}, {"non-operational", 2}};
constexpr NamedNumber kManagements[] = {{"driver", 0}, {"nvram", 1}};
constexpr NamedNumber kProfiles[] = {
    {"monitor-only", 0}, {"conservative", 1}, {"moderate", 2}, {"aggressive", 3}, {"defensive", 4}};
constexpr NamedNumber kPortElements[] = {
    {"first", static_cast<std::uint32_t>(PortElement::kFirst)},
    {"second", static_cast<std::uint32_t>(PortElement::kSecond)},
    {"absent", static_cast<std::uint32_t>(PortElement::kAbsent)},
};

constexpr std::uint32_t kDepartedLimit = 100000;

// A list of names, or the mask itself.
template <typename Number>
void ReadMask(const Value& value, std::span<const NamedNumber> bits, Number& mask) {
  if (!value.IsList()) return value.Into(mask);
  mask = static_cast<Number>(value.Mask(bits));
}

constexpr KeyRow<SCMRProfile> kProfileKeys[] = {
    {"configured",
     [](const Value& value, SCMRProfile& into) { into.configuration_status = value.Bool() ? 0 : 1; }},
    {"management",
     [](const Value& value, SCMRProfile& into) { value.CodeInto(kManagements, into.management); }},
    {"activation", [](const Value& value, SCMRProfile& into) { value.CodeInto(kProfiles, into.activation); }},
};

constexpr NumberRow<SCMRStatisticsEntry, std::uint64_t> kCounters[] = {
    {"congestion-alarms", &SCMRStatisticsEntry::congestion_alarms},
    {"congestion-warnings", &SCMRStatisticsEntry::congestion_warnings},
    {"cleared-congestion", &SCMRStatisticsEntry::cleared_congestion},
    {"throttled-up", &SCMRStatisticsEntry::throttled_up},
    {"throttled-down", &SCMRStatisticsEntry::throttled_down},
    {"bottomed-out", &SCMRStatisticsEntry::bottomed_out},
    {"returned-busy", &SCMRStatisticsEntry::returned_busy},
    {"link-failure", &SCMRStatisticsEntry::link_failure},
    {"link-unknown-event", &SCMRStatisticsEntry::link_unknown_event},
    {"loss-of-sync", &SCMRStatisticsEntry::loss_of_sync},
    {"loss-of-signal", &SCMRStatisticsEntry::loss_of_signal},
    {"link-device-specific-event", &SCMRStatisticsEntry::link_device_specific_event},
    {"primitive-sequence-error", &SCMRStatisticsEntry::primitive_sequence_error},
    {"invalid-transmission-word", &SCMRStatisticsEntry::invalid_transmission_word},
    {"invalid-crc", &SCMRStatisticsEntry::invalid_crc},
    {"link-uncorrectable-fec", &SCMRStatisticsEntry::link_uncorrectable_fec},
    {"delivery-failure-unknown", &SCMRStatisticsEntry::delivery_failure_unknown},
    {"delivery-timeout", &SCMRStatisticsEntry::delivery_timeout},
    {"delivery-unable-to-route", &SCMRStatisticsEntry::delivery_unable_to_route},
    {"delivery-failure-device-specific", &SCMRStatisticsEntry::delivery_failure_device_specific},
    {"congestion-clear", &SCMRStatisticsEntry::congestion_clear},
    {"congestion-lost-credit", &SCMRStatisticsEntry::congestion_lost_credit},
    {"congestion-credit-stall", &SCMRStatisticsEntry::congestion_credit_stall},
    {"congestion-oversubscription", &SCMRStatisticsEntry::congestion_oversubscription},
    {"congestion-device-specific", &SCMRStatisticsEntry::congestion_device_specific},
    {"pun", &SCMRStatisticsEntry::pun},
};

void ReadTargetCounters(const Value& map, CongestionSetup& into) {
  map.EachKey([&](const Value& value) {
    WorldWideName name;
    if (!ReadOctets(value.Key(), name.octets)) return value.WrongKey("the name of a target");
    ReadNumbers(value, kCounters, into.targets[NameNumber(name)]);
  });
}

constexpr KeyRow<CongestionSetup> kStatisticsKeys[] = {
    {"port-element",
     [](const Value& value, CongestionSetup& into) {
       into.port_element = static_cast<PortElement>(value.Choice(kPortElements));
     }},
    {"port", [](const Value& value, CongestionSetup& into) { ReadNumbers(value, kCounters, into.port); }},
    {"targets", ReadTargetCounters},
    {"departed-targets",
     [](const Value& value, CongestionSetup& into) {
       into.departed = static_cast<std::uint32_t>(value.Number(0, kDepartedLimit));
     }},
};

constexpr KeyRow<Entry> kCongestionKeys[] = {
    {"enabled", [](const Value& value, Entry& into) { value.Into(into.congestion.enabled); }},
    {"state", [](const Value& value,
                 Entry& into) { value.CodeInto(kCongestionStates, into.record.congestion_state); }},
    {"severity",
     [](const Value& value, Entry& into) { value.CodeInto(kSeverities, into.record.congestion_severity); }},
    {"notifications",
     [](const Value& value, Entry& into) {
       ReadMask(value, kNotifications, into.record.congestion_notifications);
     }},
    {"link-event",
     [](const Value& value, Entry& into) { value.CodeInto(kLinkEvents, into.record.link_event_type); }},
    {"link-event-threshold",
     [](const Value& value, Entry& into) { value.Into(into.record.link_event_threshold_ms); }},
    {"delivery-reason",
     [](const Value& value, Entry& into) { value.CodeInto(kDeliveryReasons, into.record.delivery_reason); }},
    {"congestion-event",
     [](const Value& value, Entry& into) { value.CodeInto(kEvents, into.record.congestion_event_type); }},
    {"congestion-event-period",
     [](const Value& value, Entry& into) { value.Into(into.record.congestion_event_period_ms); }},
    {"alarms", [](const Value& value, Entry& into) { value.Into(into.record.congestion_alarms); }},
    {"warnings", [](const Value& value, Entry& into) { value.Into(into.record.congestion_warnings); }},
    {"fabric-connection",
     [](const Value& value, Entry& into) {
       ReadMask(value, kFabricFlags, into.record.fabric_connection_flags);
     }},
    {"virtual-lane",
     [](const Value& value, Entry& into) { value.CodeInto(kLanes, into.record.virtual_lane); }},
    {"throttling",
     [](const Value& value, Entry& into) { value.CodeInto(kThrottling, into.record.io_throttling); }},
    {"seconds-since-event",
     [](const Value& value, Entry& into) { value.Into(into.record.seconds_since_event); }},
    {"link-integrity-events",
     [](const Value& value, Entry& into) { value.Into(into.record.link_integrity_events); }},
    {"delivery-events",
     [](const Value& value, Entry& into) { value.Into(into.record.delivery_notification_events); }},
    {"statistics", [](const Value& value, Entry& into) { ReadMap(value, kStatisticsKeys, into.congestion); }},
    {"profile",
     [](const Value& value, Entry& into) { ReadMap(value, kProfileKeys, into.congestion.profile); }},
};

constexpr KeyRow<Entry> kStateKeys[] = {
    {"cleared",
     [](const Value& value, Entry& into) {
       if (value.Bool()) ClearStatistics(into.congestion);
     }},
    {"profile",
     [](const Value& value, Entry& into) { ReadMap(value, kProfileKeys, into.congestion.profile); }},
};

}  // namespace

void ReadCongestion(const Value& map, Entry& entry) {
  ReadMap(map, kCongestionKeys, entry);
}

void ReadCongestionState(const Value& map, Entry& entry) {
  ReadMap(map, kStateKeys, entry);
}

StateNode CongestionState(const CongestionSetup& setup) {
  StateNode node;
  node["cleared"] = setup.cleared;
  StateNode& profile = node["profile"];
  profile["configured"] = setup.profile.configuration_status == 0;
  profile["management"] = static_cast<unsigned>(setup.profile.management);
  profile["activation"] = unsigned{setup.profile.activation};
  return node;
}

}  // namespace lab
