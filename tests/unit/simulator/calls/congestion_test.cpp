#include <string>
#include <vector>

#include "base/text.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using lab::OctetText;

constexpr std::uint64_t kTop = 0xFFFFFFFFFFFFFFFF;

class CongestionCalls : public LabTest {
 protected:
  // A host with one adapter of this family and one port with these keys.
  void UsePort(const std::string& keys, const std::string& family = "dahlia") const {
    UseHost("adapters:\n  - family: " + family +
            "\n    serial: S\n    ports:\n"
            "      - {wwpn: 21:00:00:0e:1e:11:22:33, " +
            keys + "}\n");
  }

  static SCMRStatisticsEntry* GetList() {
    SCMRStatisticsEntry* head = nullptr;
    EXPECT_EQ(TORPI_GetSCMRStatisticsList(HandleAt(0), &head), 0u);
    return head;
  }

  // The elements of the list by their kind and port name.
  static std::vector<std::string> Elements() {
    std::vector<std::string> elements;
    SCMRStatisticsEntry* const head = GetList();
    for (const SCMRStatisticsEntry* element = head; element; element = element->next) {
      const bool is_port = element->kind == StatisticsElementKind::kPhysicalPort;
      elements.push_back((is_port ? "port " : "other ") + OctetText(element->port_name.octets));
    }
    if (head) {
      EXPECT_EQ(TORPI_FreeSCMRStatisticsList(head), 0u);
    }
    return elements;
  }

  static SCMRProfile GetProfile() {
    SCMRProfile profile = {};
    EXPECT_EQ(TORPI_GetSCMRProfile(HandleAt(0), &profile), 0u);
    return profile;
  }
};

constexpr const char* kTargets = "targets: {count: 2, wwpn: 50:00:00:00:00:00:00:01}";

TEST_F(CongestionCalls, FeatureIsOnByDefault) {
  std::uint8_t enabled = 0;
  UsePort("speed: 64");
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled), 0u);
  EXPECT_EQ(enabled, 1);
  NextRun();
  UsePort("congestion: {enabled: false}");
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled), 0u);
  EXPECT_EQ(enabled, 0);
}

TEST_F(CongestionCalls, PortsWithoutTheCapabilityRefuse) {
  UsePort("speed: 64, capabilities: 0");
  std::uint8_t enabled = 0;
  SCMRStatisticsEntry* head = nullptr;
  SCMRProfile profile = {};
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled), 118u);
  EXPECT_EQ(TORPI_GetSCMRStatisticsList(HandleAt(0), &head), 118u);
  EXPECT_EQ(TORPI_SANCongMgmtResetStatistics(HandleAt(0)), 118u);
  EXPECT_EQ(TORPI_GetSCMRProfile(HandleAt(0), &profile), 118u);
  EXPECT_EQ(TORPI_SetSCMRProfile(HandleAt(0), &profile), 118u);
}

TEST_F(CongestionCalls, FirstGenerationHasTheFeatureAlone) {
  UsePort("speed: 64, capabilities: 0x800000");
  std::uint8_t enabled = 0;
  SCMRStatisticsEntry* head = nullptr;
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled), 0u);
  EXPECT_EQ(enabled, 1);
  EXPECT_EQ(TORPI_GetSCMRStatisticsList(HandleAt(0), &head), 118u);
}

TEST_F(CongestionCalls, MaintenanceModeAndNullsAreRefused) {
  UsePort("maintenance: true");
  std::uint8_t enabled = 0;
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled), 150u);
  NextRun();
  UsePort("speed: 64");
  EXPECT_EQ(TORPI_IsVCLMFeatureEnabled(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_GetSCMRStatisticsList(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_GetSCMRProfile(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_SetSCMRProfile(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(nullptr), 903u);
}

TEST_F(CongestionCalls, ListHasThePortAndItsTargets) {
  UsePort(kTargets);
  EXPECT_EQ(Elements(),
            (std::vector<std::string>{"port 21:00:00:0e:1e:11:22:33", "other 50:00:00:00:00:00:00:01",
                                      "other 50:00:00:00:00:00:00:02"}));
}

TEST_F(CongestionCalls, PortElementIsSecond) {
  UsePort("congestion: {statistics: {port-element: second, port: {congestion-alarms: 7}}}");
  const SCMRStatisticsEntry* const head = GetList();
  EXPECT_NE(head->kind, StatisticsElementKind::kPhysicalPort);
  ASSERT_NE(head->next, nullptr);
  EXPECT_EQ(head->next->kind, StatisticsElementKind::kPhysicalPort);
  EXPECT_EQ(head->next->congestion_alarms, 7u);
  EXPECT_EQ(head->next->next, nullptr);
}

TEST_F(CongestionCalls, PortElementIsAbsent) {
  UsePort("congestion: {statistics: {port-element: absent}}, " + std::string(kTargets));
  EXPECT_EQ(Elements(),
            (std::vector<std::string>{"other 50:00:00:00:00:00:00:01", "other 50:00:00:00:00:00:00:02"}));
}

TEST_F(CongestionCalls, ListWithoutAnElementIsNull) {
  UsePort("congestion: {statistics: {port-element: absent}}");
  EXPECT_EQ(GetList(), nullptr);
}

TEST_F(CongestionCalls, DepartedTargetsHaveNamesOfTheirOwn) {
  UsePort("congestion: {statistics: {departed-targets: 10000}}, " + std::string(kTargets));
  const std::vector<std::string> elements = Elements();
  ASSERT_EQ(elements.size(), 10003u);
  EXPECT_EQ(elements[3], "other 50:00:0e:ff:00:00:00:00");
  EXPECT_EQ(elements[10002], "other 50:00:0e:ff:00:00:27:0f");
}

TEST_F(CongestionCalls, CountersAreThoseOfTheHostFile) {
  UsePort(
      "congestion: {statistics: {port: {pun: 1, returned-busy: 18446744073709551615}, "
      "targets: {50:00:00:00:00:00:00:02: {link-uncorrectable-fec: 5}}}}, " +
      std::string(kTargets));
  const SCMRStatisticsEntry* const head = GetList();
  EXPECT_EQ(head->pun, 1u);
  EXPECT_EQ(head->returned_busy, kTop);
  EXPECT_EQ(head->next->link_uncorrectable_fec, 0u);
  EXPECT_EQ(head->next->next->link_uncorrectable_fec, 5u);
}

TEST_F(CongestionCalls, EachListIsFreedOnce) {
  UsePort(kTargets);
  SCMRStatisticsEntry* const first = GetList();
  SCMRStatisticsEntry* const second = GetList();
  EXPECT_NE(first, second);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(first->next), 903u);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(first), 0u);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(first), 903u);
  EXPECT_EQ(second->next->next->next, nullptr);
  EXPECT_EQ(TORPI_FreeSCMRStatisticsList(second), 0u);
}

TEST_F(CongestionCalls, ClearingClearsTheWholeListAcrossRuns) {
  UsePort(
      "congestion: {statistics: {port: {congestion-alarms: 3}, "
      "targets: {50:00:00:00:00:00:00:01: {pun: 4}}}}, " +
      std::string(kTargets));
  UseState();
  EXPECT_EQ(GetList()->congestion_alarms, 3u);
  EXPECT_EQ(TORPI_SANCongMgmtResetStatistics(HandleAt(0)), 0u);
  for (int run = 0; run < 2; ++run) {
    const SCMRStatisticsEntry* const head = GetList();
    EXPECT_EQ(head->congestion_alarms, 0u);
    ASSERT_NE(head->next, nullptr);
    EXPECT_EQ(head->next->pun, 0u);
    NextRun();
  }
}

TEST_F(CongestionCalls, ProfileIsKeptAcrossRuns) {
  UsePort("congestion: {profile: {configured: false, management: nvram, activation: moderate}}");
  UseState();
  SCMRProfile profile = GetProfile();
  EXPECT_EQ(profile.configuration_status, 1);
  EXPECT_EQ(profile.management, ProfileManagement::kNvram);
  EXPECT_EQ(profile.activation, 2);
  profile.management = ProfileManagement::kDriverSettings;
  profile.activation = 5;
  EXPECT_EQ(TORPI_SetSCMRProfile(HandleAt(0), &profile), 0u);
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(GetProfile().configuration_status, 1);
    EXPECT_EQ(GetProfile().management, ProfileManagement::kDriverSettings);
    EXPECT_EQ(GetProfile().activation, 5);
    NextRun();
  }
}

TEST_F(CongestionCalls, RecordHasTheStatus) {
  UsePort(
      "congestion: {state: congested, severity: alarm, notifications: [congestion, link-integrity], "
      "link-event: device-specific, link-event-threshold: 1, delivery-reason: timeout, "
      "congestion-event: credit-stall, congestion-event-period: 2, alarms: 0x100000005, warnings: 6, "
      "fabric-connection: [completed, cisco], virtual-lane: non-operational, throttling: active, "
      "seconds-since-event: 3, link-integrity-events: 4, delivery-events: 5}");
  const FCProtocolEntry& entry = *EntryAt(0);
  EXPECT_EQ(entry.congestion_state, 1);
  EXPECT_EQ(entry.congestion_severity, 0xF7);
  EXPECT_EQ(entry.congestion_notifications, 5);
  EXPECT_EQ(entry.link_event_type, 15);
  EXPECT_EQ(entry.link_event_threshold_ms, 1u);
  EXPECT_EQ(entry.delivery_reason, 1);
  EXPECT_EQ(entry.congestion_event_type, 2);
  EXPECT_EQ(entry.congestion_event_period_ms, 2u);
  EXPECT_EQ(entry.congestion_alarms, 0x100000005u);
  EXPECT_EQ(entry.congestion_warnings, 6u);
  EXPECT_EQ(entry.fabric_connection_flags, 5);
  EXPECT_EQ(entry.virtual_lane, 2);
  EXPECT_EQ(entry.io_throttling, 2);
  EXPECT_EQ(entry.seconds_since_event, 3u);
  EXPECT_EQ(entry.link_integrity_events, 4);
  EXPECT_EQ(entry.delivery_notification_events, 5);
}

TEST_F(CongestionCalls, DefaultsFitTheFamily) {
  UsePort("speed: 64");
  EXPECT_EQ(EntryAt(0)->fabric_connection_flags, 3);
  EXPECT_EQ(EntryAt(0)->virtual_lane, 1);
  EXPECT_EQ(EntryAt(0)->io_throttling, 1);
  NextRun();
  UsePort("speed: 16", "elm");
  EXPECT_EQ(EntryAt(0)->fabric_connection_flags, 0);
  EXPECT_EQ(EntryAt(0)->io_throttling, 0);
}

TEST_F(CongestionCalls, CallsAreInTheTrace) {
  UsePort("congestion: {profile: {management: nvram, activation: moderate}}, " + std::string(kTargets));
  std::uint8_t enabled = 0;
  TORPI_IsVCLMFeatureEnabled(HandleAt(0), &enabled);
  TORPI_FreeSCMRStatisticsList(GetList());
  TORPI_SANCongMgmtResetStatistics(HandleAt(0));
  const SCMRProfile profile = GetProfile();
  TORPI_SetSCMRProfile(HandleAt(0), &profile);
  constexpr const char* kPort = "(port=FC_21:00:00:0e:1e:11:22:33";
  const std::string trace = Read("trace");
  for (const std::string& line : {std::string("TORPI_IsVCLMFeatureEnabled") + kPort + ") -> 0 enabled=1\n",
                                  std::string("TORPI_GetSCMRStatisticsList") + kPort + ") -> 0 elements=3\n",
                                  std::string("TORPI_FreeSCMRStatisticsList() -> 0 elements=3\n"),
                                  std::string("TORPI_SANCongMgmtResetStatistics") + kPort + ") -> 0\n",
                                  std::string("TORPI_GetSCMRProfile") + kPort + ") -> 0 profile=0,1,2\n",
                                  std::string("TORPI_SetSCMRProfile") + kPort + ", \"0,1,2\") -> 0\n"}) {
    EXPECT_NE(trace.find(line), std::string::npos) << line << trace;
  }
}

struct Mistake {
  const char* keys;
  const char* reported;
};

class CongestionMistakes : public CongestionCalls, public testing::WithParamInterface<Mistake> {};

TEST_P(CongestionMistakes, AreReportedWithTheirKey) {
  UsePort(std::string("congestion: ") + GetParam().keys);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  const std::string reported = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(reported.starts_with(Path("lab.yaml") + ":5:")) << reported;
  EXPECT_NE(reported.find(std::string(": ") + GetParam().reported), std::string::npos) << reported;
}

INSTANTIATE_TEST_SUITE_P(
    All, CongestionMistakes,
    testing::Values(
        Mistake{"{state: sick}",
                "state: expected one of healthy, congested, or a number up to 255, got 'sick'"},
        Mistake{"{severity: 256}", "severity: expected one of none, warning, alarm, or a number up to 255"},
        Mistake{"{notifications: [all]}",
                "notifications: expected one of congestion, delivery, link-integrity, got 'all'"},
        Mistake{"{notifications: 65536}", "notifications: expected a number from 0 to 65535, got '65536'"},
        Mistake{"{enabled: 1}", "enabled: expected true or false"},
        Mistake{"{colour: red}", "colour: expected one of the keys enabled, state, severity"},
        Mistake{"{profile: {activation: 256}}", "activation: expected one of monitor-only"},
        Mistake{"{profile: {speed: 1}}",
                "speed: expected one of the keys configured, management, activation"},
        Mistake{"{statistics: {port-element: third}}",
                "port-element: expected one of first, second, absent, got 'third'"},
        Mistake{"{statistics: {port: {pun: -1}}}", "pun: expected a number from 0 to 18446744073709551615"},
        Mistake{"{statistics: {port: {puns: 1}}}", "puns: expected one of the keys congestion-alarms"},
        Mistake{"{statistics: {targets: {tape: {}}}}", "tape: expected the name of a target"},
        Mistake{"{statistics: {departed-targets: 100001}}",
                "departed-targets: expected a number from 0 to 100000, got '100001'"}));

}  // namespace
