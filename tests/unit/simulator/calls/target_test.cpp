#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/marked_text.h"

namespace {

using lab::OctetText;

class Targets : public LabTest {
 protected:
  // A host with one adapter of this family and one port with these keys.
  void UsePort(const std::string& keys, const std::string& family = "hazel") const {
    UseHost("adapters:\n  - family: " + family +
            "\n    serial: S\n    ports:\n"
            "      - {wwpn: 21:00:00:0e:1e:11:22:33, " +
            keys + "}\n");
  }

  static std::vector<const TargetEntry*> TargetsOf(const FCProtocolEntry* entry) {
    std::vector<const TargetEntry*> targets;
    for (const TargetEntry* target = entry->first_target; target; target = target->next)
      targets.push_back(target);
    return targets;
  }
  static const TargetEntry& TargetAt(std::size_t place) { return *TargetsOf(EntryAt(0)).at(place); }
  static std::vector<const LunEntry*> LunsOf(const TargetEntry& target) {
    std::vector<const LunEntry*> luns;
    for (const LunEntry* lun = target.first_lun; lun; lun = lun->next) luns.push_back(lun);
    return luns;
  }
  static std::string NumbersOf(const TargetEntry& target) {
    std::string numbers;
    for (const LunEntry* lun : LunsOf(target)) numbers += std::to_string(lun->number) + ' ';
    return numbers;
  }
  static std::string Name(const TargetEntry& target) { return OctetText(target.port_name.octets); }
  static std::string UniqueId(const LunEntry& lun) {
    return OctetText({lun.unique_id, lun.fcp_unique_id_length});
  }

  static std::uint32_t SpeedOf(std::uint16_t number, std::uint32_t answer = 0) {
    std::uint32_t speed = 0xEEEEEEEE;
    EXPECT_EQ(TORPI_GetTargetLinkSpeed(HandleAt(0), number, &speed), answer);
    return speed;
  }
};

TEST_F(Targets, PortWithoutThemHasNone) {
  UsePort("speed: 32");
  EXPECT_EQ(EntryAt(0)->target_count, 0u);
  EXPECT_EQ(EntryAt(0)->first_target, nullptr);
}

TEST_F(Targets, DefaultsMakeATargetOfUse) {
  UsePort("targets: [{}, {type: nvme}]");
  EXPECT_EQ(EntryAt(0)->target_count, 2u);
  const TargetEntry& fcp = TargetAt(0);
  EXPECT_EQ(Name(fcp), "50:00:0e:11:00:00:00:00");
  EXPECT_EQ(OctetText(fcp.node_name.octets), "50:10:0e:11:00:00:00:00");
  EXPECT_EQ(OctetText(fcp.port_id.octets), "02:01:00");
  EXPECT_EQ(fcp.number, 0);
  EXPECT_EQ(fcp.vendor_id.View(), "LABSTOR");
  EXPECT_EQ(fcp.product_id.View(), "VirtualArray");
  EXPECT_EQ(fcp.fcp_revision.View(), "2.10");
  EXPECT_EQ(fcp.serial_number.View(), "LS00000000");
  EXPECT_EQ(fcp.product_type, 0u);
  EXPECT_FALSE(IsNvmeTarget(fcp));
  EXPECT_EQ(OctetText(fcp.state_flags), "00:00:02:00:01:00");
  EXPECT_EQ(fcp.congestion_state, 0);
  EXPECT_EQ(fcp.virtual_lane, 2);
  EXPECT_EQ(fcp.io_throttling, 1);
  EXPECT_EQ(fcp.lun_count, 0u);
  EXPECT_EQ(fcp.first_lun, nullptr);
  EXPECT_TRUE(fcp.nqn.Empty());

  const TargetEntry& nvme = TargetAt(1);
  EXPECT_EQ(Name(nvme), "50:00:0e:11:00:00:00:01");
  EXPECT_EQ(nvme.number, 1);
  EXPECT_TRUE(IsNvmeTarget(nvme));
  EXPECT_EQ(nvme.nvme_revision.View(), "2.10.4");
  EXPECT_EQ(nvme.controller_id, 1);
  EXPECT_EQ(nvme.nqn.View(), "nqn.2026-01.lab:subsystem:50:10:0e:11:00:00:00:01");
}

TEST_F(Targets, EveryKeyReachesItsField) {
  UsePort(
      "targets: [{type: nvme, wwpn: 50:06:01:60:ab:cd:ef:01, wwnn: 50:06:01:60:00:00:00:01,\n"
      "  port-id: 01:0b:ff, number: 300, vendor: VENDOR-8, product: PRODUCT-WITH--16, revision: REVISION,\n"
      "  serial: SN-1, product-type: tape, nqn: nqn.x, controller-id: 427, state: unconfigured,\n"
      "  congestion: {state: congested, virtual-lane: slow, throttling: active, notifications: 6, "
      "link-event: "
      "1,\n"
      "    link-event-threshold: 2, delivery-reason: 3, peer-event: 4, peer-event-period: 5,\n"
      "    link-integrity-events: 7, seconds-since-event: 8},\n"
      "  lun-count: 9, namespaces: 4}]");
  const TargetEntry& target = TargetAt(0);
  EXPECT_EQ(Name(target), "50:06:01:60:ab:cd:ef:01");
  EXPECT_EQ(OctetText(target.node_name.octets), "50:06:01:60:00:00:00:01");
  EXPECT_EQ(OctetText(target.port_id.octets), "01:0b:ff");
  EXPECT_EQ(target.number, 300);
  EXPECT_EQ(target.vendor_id.View(), "VENDOR-8");
  EXPECT_EQ(target.product_id.View(), "PRODUCT-WITH--16");
  EXPECT_EQ(target.nvme_revision.View(), "REVISION");
  EXPECT_EQ(target.serial_number.View(), "SN-1");
  EXPECT_EQ(target.product_type, 1u);
  EXPECT_EQ(target.nqn.View(), "nqn.x");
  EXPECT_EQ(target.controller_id, 427);
  EXPECT_EQ(OctetText(target.state_flags), "40:00:00:00:00:08");
  EXPECT_EQ(target.congestion_state, 1);
  EXPECT_EQ(target.virtual_lane, 1);
  EXPECT_EQ(target.io_throttling, 2);
  EXPECT_EQ(target.congestion_notifications, 6);
  EXPECT_EQ(target.link_event_type, 1);
  EXPECT_EQ(target.link_event_threshold_ms, 2u);
  EXPECT_EQ(target.delivery_reason, 3);
  EXPECT_EQ(target.peer_congestion_event_type, 4);
  EXPECT_EQ(target.peer_congestion_event_period_ms, 5u);
  EXPECT_EQ(target.link_integrity_events, 7);
  EXPECT_EQ(target.seconds_since_event, 8u);
  EXPECT_EQ(target.lun_count, 9u);
  EXPECT_EQ(NumbersOf(target), "4 ");
}

TEST_F(Targets, StateIsOneOfThree) {
  UsePort("targets: [{state: offline}, {state: online}, {state: unconfigured}]");
  EXPECT_EQ(OctetText(TargetAt(0).state_flags), "00:00:00:00:00:00");
  EXPECT_EQ(OctetText(TargetAt(1).state_flags), "00:00:02:00:01:00");
  EXPECT_EQ(OctetText(TargetAt(2).state_flags), "40:00:00:00:00:00");
}

TEST_F(Targets, CurrentRemotePortRecord) {
  UsePort("targets: [{}, {remote-type: initiator-target, session: failed, secure: true}, {session: 77}]");
  const TargetEntry& plain = TargetAt(0);
  EXPECT_EQ(OctetText(plain.remote_port_name.octets), Name(plain));
  EXPECT_EQ(plain.remote_port_id, 0x000102u);
  EXPECT_EQ(plain.remote_flags, 0x02);
  EXPECT_EQ(plain.remote_session_state, 0u);
  EXPECT_EQ(OctetText(plain.old_port_name.octets), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(TargetAt(1).remote_flags, 0x13);
  EXPECT_EQ(TargetAt(1).remote_session_state, 3u);
  EXPECT_EQ(TargetAt(2).remote_session_state, 77u);
}

TEST_F(Targets, OlderRemotePortRecord) {
  // The default of the first family's ports, whose driver does not fill the current record.
  UsePort(
      "targets: [{}, {remote-type: initiator, session: failed}, {remote-type: initiator-target, secure: "
      "true,\n"
      "  session: complete}, {remote-record: none}, {remote-record: current}, {session: 300}]",
      "aster");
  const TargetEntry& plain = TargetAt(0);
  EXPECT_EQ(OctetText(plain.old_port_name.octets), Name(plain));
  EXPECT_EQ(plain.old_port_id, 0x000102u);
  EXPECT_EQ(plain.old_remote_type, 1);
  EXPECT_EQ(plain.old_secure_mode, 0);
  EXPECT_EQ(plain.old_session_state, 0);
  EXPECT_EQ(TargetAt(1).old_remote_type, 2);
  EXPECT_EQ(TargetAt(1).old_session_state, 4);  // the older record's code
  EXPECT_EQ(TargetAt(2).old_remote_type, 3);
  EXPECT_EQ(TargetAt(2).old_secure_mode, 1);
  EXPECT_EQ(TargetAt(2).old_session_state, 4);
  EXPECT_EQ(OctetText(TargetAt(3).old_port_name.octets), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(OctetText(TargetAt(3).remote_port_name.octets), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(OctetText(TargetAt(4).remote_port_name.octets), Name(TargetAt(4)));
  EXPECT_EQ(TargetAt(5).old_session_state, 255);
}

TEST_F(Targets, RangeCountsUp) {
  UsePort(
      "targets: {count: 300, wwpn: 50:00:00:00:00:00:00:ff, wwnn: 50:00:00:00:00:ff:ff:ff, port-id: "
      "01:ff:ff,\n"
      "  number: 7, type: nvme, controller-id: 65535}");
  EXPECT_EQ(EntryAt(0)->target_count, 300u);
  EXPECT_EQ(TargetsOf(EntryAt(0)).size(), 300u);
  EXPECT_EQ(Name(TargetAt(1)), "50:00:00:00:00:00:01:00");
  EXPECT_EQ(OctetText(TargetAt(1).node_name.octets), "50:00:00:00:01:00:00:00");
  EXPECT_EQ(OctetText(TargetAt(1).port_id.octets), "02:00:00");
  EXPECT_EQ(TargetAt(1).number, 8);
  EXPECT_EQ(TargetAt(1).controller_id, 0);
  EXPECT_EQ(TargetAt(1).serial_number.View(), "LS00000100");
  EXPECT_EQ(TargetAt(1).nqn.View(), "nqn.2026-01.lab:subsystem:50:00:00:00:01:00:00:00");
  EXPECT_EQ(OctetText(TargetAt(1).remote_port_name.octets), Name(TargetAt(1)));
  EXPECT_EQ(Name(TargetAt(299)), "50:00:00:00:00:00:02:2a");
  EXPECT_EQ(TargetAt(299).number, 306);
}

TEST_F(Targets, TextsOfARangeAreTheSameWhereTheyAreGiven) {
  UsePort("targets: {count: 2, type: nvme, serial: S1, nqn: nqn.x}");
  EXPECT_EQ(TargetAt(1).serial_number.View(), "S1");
  EXPECT_EQ(TargetAt(1).nqn.View(), "nqn.x");
}

TEST_F(Targets, ItemsAndRangesFollowEachOtherInOneChain) {
  UsePort("targets: [{count: 3, luns: 0-1}, {wwpn: 50:00:00:00:00:00:00:aa, luns: 5}, {count: 2}]");
  std::string numbers;
  for (const TargetEntry* target : TargetsOf(EntryAt(0))) numbers += std::to_string(target->number) + ' ';
  EXPECT_EQ(numbers, "0 1 2 3 4 5 ");
  EXPECT_EQ(Name(TargetAt(4)), "50:00:0e:11:00:00:00:04");
  EXPECT_EQ(NumbersOf(TargetAt(2)), "0 1 ");
  EXPECT_EQ(NumbersOf(TargetAt(3)), "5 ");
  EXPECT_EQ(NumbersOf(TargetAt(5)), "");
}

TEST_F(Targets, LunsAreGivenSinglyAndInRanges) {
  UsePort("targets: [{luns: [0-3, 7, {number: 65533-65535, size: 9}, 4]}, {luns: []}]");
  EXPECT_EQ(NumbersOf(TargetAt(0)), "0 1 2 3 7 65533 65534 65535 4 ");
  EXPECT_EQ(TargetAt(0).lun_count, 9u);
  EXPECT_EQ(LunsOf(TargetAt(0))[4]->fcp_size_mb.Value(), 102400u);
  EXPECT_EQ(LunsOf(TargetAt(0))[5]->fcp_size_mb.Value(), 9u);
  EXPECT_EQ(LunsOf(TargetAt(0))[8]->fcp_size_mb.Value(), 102400u);
  EXPECT_EQ(TargetAt(1).first_lun, nullptr);
}

TEST_F(Targets, EveryKeyOfALunReachesItsField) {
  UsePort(
      "targets: [{vendor: V, luns: [{vendor: VENDOR-8, product: PRODUCT-WITH--16, revision: REV4, size: "
      "4294967295,\n"
      "  unique-id: 60:0a:ff}, 1]}, {type: nvme, revision: R, namespaces: {number: 1-2, revision: REVISION,\n"
      "  size: 18446744073709551615, unique-id: ff}}]");
  const LunEntry& lun = *LunsOf(TargetAt(0))[0];
  EXPECT_EQ(lun.number, 0);
  EXPECT_EQ(lun.vendor_id.View(), "VENDOR-8");
  EXPECT_EQ(lun.product_id.View(), "PRODUCT-WITH--16");
  EXPECT_EQ(lun.fcp_revision.View(), "REV4");
  EXPECT_EQ(lun.fcp_size_mb.Value(), 4294967295u);
  EXPECT_EQ(UniqueId(lun), "60:0a:ff");
  const LunEntry& plain = *LunsOf(TargetAt(0))[1];
  EXPECT_EQ(plain.vendor_id.View(), "V");
  EXPECT_EQ(plain.product_id.View(), "VirtualDisk");
  EXPECT_EQ(plain.fcp_revision.View(), "2.10");
  const LunEntry& name_space = *LunsOf(TargetAt(1))[1];
  EXPECT_EQ(name_space.number, 2);
  EXPECT_EQ(name_space.nvme_revision.View(), "REVISION");
  EXPECT_EQ(name_space.nvme_size_mb.Value(), UINT64_MAX);
  EXPECT_EQ(name_space.nvme_unique_id_length, 1);
  EXPECT_EQ(name_space.unique_id[0], 0x00);  // counted up
}

TEST_F(Targets, UniqueIdsCountUpWithinARangeAndDifferFromTargetToTarget) {
  UsePort(
      "targets: [{count: 2, luns: 254-257}, {luns: {number: 0-1, unique-id: 60:00:ff:ff}}, {luns: "
      "{unique-id: \"\"}}]");
  EXPECT_EQ(UniqueId(*LunsOf(TargetAt(0))[0]), "60:10:0e:11:00:00:00:00:00:00:00:00:00:00:00:fe");
  EXPECT_EQ(UniqueId(*LunsOf(TargetAt(0))[3]), "60:10:0e:11:00:00:00:00:00:00:00:00:00:00:01:01");
  EXPECT_EQ(UniqueId(*LunsOf(TargetAt(1))[0]), "60:10:0e:11:00:00:00:01:00:00:00:00:00:00:00:fe");
  EXPECT_EQ(UniqueId(*LunsOf(TargetAt(2))[0]), "60:00:ff:ff");
  EXPECT_EQ(UniqueId(*LunsOf(TargetAt(2))[1]), "60:01:00:00");
  EXPECT_EQ(LunsOf(TargetAt(3))[0]->fcp_unique_id_length, 0);
}

TEST_F(Targets, VirtualPortSeesItsOwn) {
  UseHost(
      "adapters:\n"
      "  - {family: elm, ports: [{targets: [{}, {}], npiv: [{}, {targets: {luns: 3}}]}]}\n");
  EXPECT_EQ(TargetsOf(EntryAt(0)).size(), 2u);
  EXPECT_EQ(TargetsOf(EntryAt(0, 0, 1)).size(), 0u);
  EXPECT_EQ(EntryAt(0, 0, 1)->target_count, 0u);
  EXPECT_EQ(TargetsOf(EntryAt(0, 0, 2)).size(), 1u);
  EXPECT_EQ(NumbersOf(*EntryAt(0, 0, 2)->first_target), "3 ");
}

TEST_F(Targets, HundredThousandLunsInAFewLines) {
  UseHost(
      "adapters:\n"
      "  - family: dahlia\n"
      "    ports: [&port {targets: {count: 256, luns: 0-63}}, *port, *port, *port, *port, *port, *port, "
      "*port]\n");
  std::size_t count = 0;
  for (const PhyPortEntry* port = AdapterAt(0)->ports->first; port; port = port->next) {
    for (const TargetEntry* target = port->protocols->first->first_target; target; target = target->next) {
      for (const LunEntry* lun = target->first_lun; lun; lun = lun->next) ++count;
    }
  }
  EXPECT_EQ(count, 131072u);
}

TEST_F(Targets, BuiltInHostHasLunsAndNamespacesOnSeveralPorts) {
  std::size_t with_luns = 0, with_namespaces = 0;
  for (const AdapterEntry* adapter = AdapterAt(0); adapter; adapter = adapter->next) {
    for (const PhyPortEntry* port = adapter->ports->first; port; port = port->next) {
      bool luns = false, namespaces = false;
      for (const TargetEntry* target : TargetsOf(port->protocols->first)) {
        (IsNvmeTarget(*target) ? namespaces : luns) |= target->first_lun != nullptr;
      }
      with_luns += luns;
      with_namespaces += namespaces;
    }
  }
  EXPECT_GE(with_luns, 2u);
  EXPECT_GE(with_namespaces, 2u);
}

// Statistics.
TEST_F(Targets, StatisticsAreThoseOfTheHostFile) {
  UsePort(
      "targets: [{}, {statistics: {link-failure: 1, loss-of-sync: 2, loss-of-signal: 3, "
      "primitive-sequence-error: 4,\n"
      "  invalid-transmission-word: 5, invalid-crc: 4294967295, delivery-failure-unknown: 7, "
      "delivery-timeout: 8,\n"
      "  delivery-unable-to-route: 9, delivery-failure-device-specific: 10, peer-congestion-clear: 11,\n"
      "  peer-congestion-lost-credit: 12, peer-congestion-credit-stall: 13, "
      "peer-congestion-oversubscription: 14,\n"
      "  peer-congestion-device-specific: 15, link-unknown-event: 16, link-device-specific-event: 17}}]");
  TargetStatisticsAddress address{};
  address.kind = kTargetByPortName;
  address.port_name = TargetAt(1).port_name;
  TargetPortStatistics statistics;
  std::memset(&statistics, 0xEE, sizeof statistics);
  EXPECT_EQ(TORPI_GetPortStatisticsFC(EntryAt(0)->handle.sd_handle, 0, &address, &statistics), 0u);
  EXPECT_EQ(statistics.link_failure, 1u);
  EXPECT_EQ(statistics.loss_of_sync, 2u);
  EXPECT_EQ(statistics.loss_of_signal, 3u);
  EXPECT_EQ(statistics.primitive_sequence_error, 4u);
  EXPECT_EQ(statistics.invalid_transmission_word, 5u);
  EXPECT_EQ(statistics.invalid_crc, 4294967295u);
  EXPECT_EQ(statistics.delivery_failure_unknown, 7u);
  EXPECT_EQ(statistics.delivery_timeout, 8u);
  EXPECT_EQ(statistics.delivery_unable_to_route, 9u);
  EXPECT_EQ(statistics.delivery_failure_device_specific, 10u);
  EXPECT_EQ(statistics.peer_congestion_clear, 11u);
  EXPECT_EQ(statistics.peer_congestion_lost_credit, 12u);
  EXPECT_EQ(statistics.peer_congestion_credit_stall, 13u);
  EXPECT_EQ(statistics.peer_congestion_oversubscription, 14u);
  EXPECT_EQ(statistics.peer_congestion_device_specific, 15u);
  EXPECT_EQ(statistics.link_unknown_event, 16u);
  EXPECT_EQ(statistics.link_device_specific_event, 17u);
  EXPECT_NE(Read("trace").find("TORPI_GetPortStatisticsFC(port=FC_21:00:00:0e:1e:11:22:33, 0, 2, "
                               "\"50:00:0e:11:00:00:00:01\") -> 0\n"),
            std::string::npos);
}

TEST_F(Targets, StatisticsOfAWrongAddressAreRefused) {
  UsePort("targets: [{}]");
  const std::uint32_t port = EntryAt(0)->handle.sd_handle;
  TargetStatisticsAddress address{};
  address.kind = kTargetByPortName;
  address.port_name = TargetAt(0).port_name;
  TargetPortStatistics statistics{};
  EXPECT_EQ(TORPI_GetPortStatisticsFC(port + 1, 0, &address, &statistics), 901u);
  EXPECT_EQ(TORPI_GetPortStatisticsFC(port, 0, nullptr, &statistics), 903u);
  EXPECT_EQ(TORPI_GetPortStatisticsFC(port, 0, &address, nullptr), 903u);
  address.port_name[0] ^= 1;
  EXPECT_EQ(TORPI_GetPortStatisticsFC(port, 0, &address, &statistics), 907u);
  address.port_name[0] ^= 1;
  address.kind = 1;
  EXPECT_EQ(TORPI_GetPortStatisticsFC(port, 0, &address, &statistics), 903u);
}

// Link speeds.
TEST_F(Targets, LinkSpeedIsThatOfThePortByDefault) {
  UsePort("speed: 16, targets: [{}, {link-speed: 64}, {link-speed-code: 77}]");
  EXPECT_EQ(SpeedOf(0), 22u);
  EXPECT_EQ(SpeedOf(1), 100u);
  EXPECT_EQ(SpeedOf(2), 77u);
  NextRun();
  UsePort("link: down, targets: [{}]");
  EXPECT_EQ(SpeedOf(0), 50u);
}

TEST_F(Targets, LinkSpeedThatIsSetIsReadBack) {
  UsePort("targets: {count: 3}");
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 1, 8), 0u);
  EXPECT_EQ(SpeedOf(0), 50u);
  EXPECT_EQ(SpeedOf(1), 8u);
  EXPECT_EQ(SpeedOf(2), 50u);
  EXPECT_EQ(Read("trace"),
            "TORPI_GetAdapterList() -> list adapters=1\n"
            "TORPI_SetTargetLinkSpeed(port=FC_21:00:00:0e:1e:11:22:33, 1, 8) -> 0\n"
            "TORPI_GetAdapterList() -> list adapters=1\n"
            "TORPI_GetTargetLinkSpeed(port=FC_21:00:00:0e:1e:11:22:33, 0) -> 0 speed=50\n"
            "TORPI_GetAdapterList() -> list adapters=1\n"
            "TORPI_GetTargetLinkSpeed(port=FC_21:00:00:0e:1e:11:22:33, 1) -> 0 speed=8\n"
            "TORPI_GetAdapterList() -> list adapters=1\n"
            "TORPI_GetTargetLinkSpeed(port=FC_21:00:00:0e:1e:11:22:33, 2) -> 0 speed=50\n");
}

TEST_F(Targets, LinkSpeedLastsFromRunToRunInTheStateFile) {
  UseState();
  UsePort("targets: {count: 3}");
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 1, 8), 0u);
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 2, 100), 0u);
  EXPECT_NE(Read("state.yaml").find("50:00:0e:11:00:00:00:01: 8\n"), std::string::npos) << Read("state.yaml");
  NextRun();
  EXPECT_EQ(SpeedOf(0), 50u);
  EXPECT_EQ(SpeedOf(1), 8u);
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 1, 4), 0u);
  NextRun();
  EXPECT_EQ(SpeedOf(1), 4u);
  EXPECT_EQ(SpeedOf(2), 100u);
}

TEST_F(Targets, StateOfATargetThatIsGoneIsLeftAside) {
  UseState();
  UsePort("targets: {count: 3}");
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 2, 8), 0u);
  NextRun();
  UsePort("targets: {count: 2}");
  EXPECT_EQ(SpeedOf(1), 50u);
}

TEST_F(Targets, MistakeInTheStateIsReported) {
  UseState();
  UsePort("targets: {count: 3}", "elm");
  const std::string head =
      "adapters:\n  ZX100/S:\n    ports:\n      21:00:00:0e:1e:11:22:33:\n        target-speeds:\n";
  for (const auto& [line, message] :
       {std::pair{"          50:00: 8\n", ":6:11: 50:00: expected the name of a target"},
        std::pair{"          50:00:0e:11:00:00:00:01: 9\n",
                  ":6:36: 50:00:0e:11:00:00:00:01: expected one of 1, 2, 4, 8, 10, 16, 32, 64, got '9'"}}) {
    Write("state.yaml", head + line);
    NextRun();
    testing::internal::CaptureStderr();
    EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Path("state.yaml") + message + "\n");
  }
}

TEST_F(Targets, LinkSpeedThatIsNoneIsRefused) {
  UsePort("targets: {count: 1}");
  for (const std::uint32_t speed : {0u, 3u, 64u, 0xFFFFFFFFu}) {
    EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 0, speed), 903u) << speed;
  }
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 1, 8), 907u);
  EXPECT_EQ(TORPI_GetTargetLinkSpeed(HandleAt(0), 0, nullptr), 903u);
  EXPECT_EQ(SpeedOf(1, 907), 0xEEEEEEEEu);
  EXPECT_EQ(SpeedOf(0), 50u);
}

TEST_F(Targets, LinkSpeedIsReadOnlyOnConvergedAdapters) {
  for (const char* family : {"cedar", "ginkgo", "fern"}) {
    NextRun();
    UsePort("targets: {count: 1}", family);
    EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 0, 8), 121u) << family;
    EXPECT_EQ(SpeedOf(0), 16u);
  }
}

TEST_F(Targets, PortInMaintenanceModeAnswers150) {
  UsePort("maintenance: true, targets: {count: 1}");
  EXPECT_EQ(SpeedOf(0, 150), 0xEEEEEEEEu);
  EXPECT_EQ(TORPI_SetTargetLinkSpeed(HandleAt(0), 0, 8), 150u);
  const TargetStatisticsAddress address{};
  TargetPortStatistics statistics{};
  EXPECT_EQ(TORPI_GetPortStatisticsFC(EntryAt(0)->handle.sd_handle, 0, &address, &statistics), 150u);
}

// Mistakes.
struct BadTargets {
  const char* name;
  const char* keys;     // of a port; "^" ahead of the mistake
  const char* message;  // after its place
};

std::ostream& operator<<(std::ostream& out, const BadTargets& bad) {
  return out << bad.name;
}

constexpr BadTargets kBadTargets[] = {
    {"NoMap", "targets: ^3", "targets: expected a map, got '3'"},
    {"ItemNoMap", "targets: [^3]", "targets: expected a map, got '3'"},
    {"Key", "targets: [{^lun: 3}]",
     "lun: expected one of the keys type, count, wwpn, wwnn, port-id, number, vendor, product, revision, "
     "serial, product-type, nqn, controller-id, state, remote-record, remote-type, session, secure, "
     "congestion, statistics, link-speed, link-speed-code, luns, namespaces, lun-count; did you mean "
     "'luns'?"},
    {"Type", "targets: [{type: ^scsi}]", "type: expected one of fcp, nvme, got 'scsi'"},
    {"CountZero", "targets: [{count: ^0}]", "count: expected a number from 1 to 4096, got '0'"},
    {"CountTooLarge", "targets: [{count: ^4097}]", "count: expected a number from 1 to 4096, got '4097'"},
    {"NumbersTooLarge", "targets: [{count: 2, number: ^65535}]",
     "number: expected target numbers up to 65535, got 65536"},
    {"Name", "targets: [{wwpn: ^50:00}]", "wwpn: expected 8 hexadecimal octets joined by ':', got '50:00'"},
    {"SameName", "targets: [{count: 3}, {wwpn: ^50:00:0e:11:00:00:00:02}]",
     "wwpn: expected a name of its own, got '50:00:0e:11:00:00:00:02' a second time"},
    {"Vendor", "targets: [{vendor: ^123456789}]",
     "vendor: expected a text of at most 8 bytes, got '123456789'"},
    {"FcpRevision", "targets: [{revision: ^12345}]",
     "revision: expected a text of at most 4 bytes, got '12345'"},
    {"NvmeRevision", "targets: [{revision: ^123456789, type: nvme}]",
     "revision: expected a text of at most 8 bytes, got '123456789'"},
    {"ProductType", "targets: [{product-type: ^floppy}]",
     "product-type: expected one of disk, tape, optical, cdrom, changer, raid, saf-te, or a number up to "
     "4294967295, got 'floppy'"},
    {"State", "targets: [{state: ^up}]", "state: expected one of online, offline, unconfigured, got 'up'"},
    {"RemoteRecord", "targets: [{remote-record: ^new}]",
     "remote-record: expected one of none, current, older, got 'new'"},
    {"RemoteType", "targets: [{remote-type: ^both}]",
     "remote-type: expected one of initiator, target, initiator-target, unknown, got 'both'"},
    {"Congestion", "targets: [{congestion: {^lane: slow}}]",
     "lane: expected one of the keys state, virtual-lane, throttling, notifications, link-event, "
     "link-event-threshold, delivery-reason, peer-event, peer-event-period, link-integrity-events, "
     "seconds-since-event"},
    {"Statistics", "targets: [{statistics: {^crc: 1}}]",
     "crc: expected one of the keys link-failure, loss-of-sync, loss-of-signal, primitive-sequence-error, "
     "invalid-transmission-word, invalid-crc, delivery-failure-unknown, delivery-timeout, "
     "delivery-unable-to-route, delivery-failure-device-specific, peer-congestion-clear, "
     "peer-congestion-lost-credit, peer-congestion-credit-stall, peer-congestion-oversubscription, "
     "peer-congestion-device-specific, link-unknown-event, link-device-specific-event"},
    {"LinkSpeed", "targets: [{link-speed: ^12}]",
     "link-speed: expected one of 1, 2, 4, 8, 10, 16, 32, 64, got '12'"},
    {"LunWord", "targets: [{luns: ^all}]",
     "luns: expected a number or a range like 0-63, up to 65535, got 'all'"},
    {"LunNumber", "targets: [{luns: ^65536}]",
     "luns: expected a number or a range like 0-63, up to 65535, got '65536'"},
    {"LunRangeBackwards", "targets: [{luns: ^3-2}]",
     "luns: expected a number or a range like 0-63, up to 65535, got '3-2'"},
    {"LunRangeOpen", "targets: [{luns: ^3-}]",
     "luns: expected a number or a range like 0-63, up to 65535, got '3-'"},
    {"LunTwice", "targets: [{luns: [0-3, 7, ^2]}]", "luns: number 2 is here twice"},
    {"LunKey", "targets: [{luns: [{^lun: 3}]}]",
     "lun: expected one of the keys number, vendor, product, revision, size, unique-id"},
    {"LunSize", "targets: [{luns: [{size: ^4294967296}]}]",
     "size: expected a number from 0 to 4294967295, got '4294967296'"},
    {"UniqueId", "targets: [{luns: [{unique-id: ^6}]}]",
     "unique-id: expected at most 32 hexadecimal octets joined by ':', got '6'"},
    {"TooManyLuns", "targets: [{count: 17, luns: ^0-16384}]",
     "luns: expected at most 16384 of a target, got 16385"},
    {"LunsOfNvme", "targets: [{^luns: 0, type: nvme}]", "luns: expected namespaces with this type of target"},
    {"NamespacesOfFcp", "targets: [{^namespaces: 0}]", "namespaces: expected luns with this type of target"},
};

class BadTargetsFile : public Targets, public testing::WithParamInterface<BadTargets> {};

TEST_P(BadTargetsFile, IsReportedWithItsLineAndGivesAnEmptyList) {
  const MarkedText host =
      WithoutMark(std::string("adapters:\n  - family: elm\n    ports:\n      - ") + GetParam().keys + "\n");
  UseHost(host.text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("lab.yaml") + host.place + ": " + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(Targets, BadTargetsFile, testing::ValuesIn(kBadTargets),
                         [](const auto& test) { return test.param.name; });

}  // namespace
