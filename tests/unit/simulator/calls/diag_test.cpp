#include <array>
#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "framework/device_library/diag_records.h"
#include "unit/simulator/lab_fixture.h"

namespace {

constexpr const char* kTarget = "50:06:0b:00:3b:20:11:c0";

class Diagnostics : public LabTest {
 protected:
  // A host of one adapter with one port that has these diagnostics, one key per line.
  void UseDiagnostics(const std::vector<std::string>& keys, const std::string& family = "hazel",
                      const std::string& port_keys = "") const {
    std::string host = "adapters:\n  - family: " + family +
                       "\n    serial: HZ1\n    ports:\n"
                       "      - targets: {wwpn: 50:06:0b:00:3b:20:11:c0, port-id: 01:02:03}\n" +
                       port_keys + "        diagnostics:\n          nqn-registered: false\n";
    for (const std::string& key : keys) host += "          " + key + '\n';
    UseHost(host);
  }

  static std::uint32_t Ping(std::uint32_t count, bool stop, std::uint32_t* good = nullptr,
                            const char* name = kTarget) {
    std::uint32_t value = 0;
    std::uint8_t buffer[256] = {};
    const std::uint32_t result =
        TORPI_DiagnosticsFCPingTest(HandleAt(0), name, count, stop ? 1 : 0, &value, buffer, sizeof buffer);
    if (good) *good = value;
    return result;
  }

  static EchoElsResult Echo(std::uint32_t kind = 2, const char* name = kTarget) {
    EchoElsResult result = {};
    EXPECT_EQ(TORPI_DiagnosticsEchoElsTest(HandleAt(0), name, 1, 0, kind, &result), 0u);
    return result;
  }

  static DiagTestRequest Request(std::uint32_t count = 5) {
    DiagTestRequest request = {};
    request.test_count = request.test_count_again = count;
    request.data_size = 64;
    request.pattern_kind = DataPatternKind::kCrpat;
    request.loopback_type = LoopbackType::kExternal;
    return request;
  }

  // Runs one pass and gives its status and CRC errors.
  static std::string Loopback(const DiagTestRequest& request) {
    const LoopbackResult result = TORPI_DiagnosticsLoopBackTest(HandleAt(0), &request);
    return std::string(result.test_status.View()) + ' ' + std::to_string(result.crc_errors);
  }

  // The statuses and miscompares of a pass, port by port.
  static std::string RWBuffer(const DiagTestRequest& request) {
    RWBufferResult* const list = TORPI_DiagnosticsReadWriteBufferTest(HandleAt(0), &request);
    if (list == nullptr) return "null";
    std::string text;
    for (const RWBufferResult* result = list; result != nullptr; result = result->next) {
      text += std::string(result->test_status.View()) + ' ' + std::to_string(result->data_miscompares) + ';';
    }
    EXPECT_EQ(TORPI_FreeRWBufferTestResultList(list), 0u);
    return text;
  }
};

TEST_F(Diagnostics, OptionIsReadBackAndAsksForAReboot) {
  UseDiagnostics({});
  UseState();
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(0)), 0u);
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 1, 0), 0u);
  NextRun();
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(0)), 1u);
  std::uint8_t reboot = 0xEE;
  EXPECT_EQ(TORPI_IsRebootRequired(&reboot), 0u);
  EXPECT_EQ(reboot, 1);
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 0, 0), 0u);
  NextRun();
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(0)), 0u);
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 2, 0), 903u);
}

TEST_F(Diagnostics, OptionThatStaysOrNeedsNoRebootAsksForNone) {
  UseDiagnostics({"diagnostic-port: true", "diagnostic-port-needs-reboot: false"});
  std::uint8_t reboot = 0xEE;
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 1, 0), 0u);
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 0, 0), 0u);
  EXPECT_EQ(TORPI_IsRebootRequired(&reboot), 0u);
  EXPECT_EQ(reboot, 0);
}

TEST_F(Diagnostics, StateKeepsThePortsApart) {
  UseHost("adapters:\n  - {family: hazel, ports: [{}, {}]}\n  - {family: hazel, ports: [{}]}\n");
  UseState();
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0, 1), 1, 0), 0u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(1, 0), 1), 0u);
  NextRun();
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(0, 0)), 0u);
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(0, 1)), 1u);
  EXPECT_EQ(TORPI_CheckAdapterDPortOption(HandleAt(1, 0)), 0u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(1, 0), 1), 158u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0, 1), 0), 159u);
}

TEST_F(Diagnostics, LinkTestGivesWhatTheHostFileSays) {
  setenv("TORPI_LAB_TIME", "2026-03-14 09:26:53", 1);
  UseDiagnostics(
      {"diagnostic-port: true",
       "link-test: {latency-ns: 258, distance-m: 3, tx-power: 1, rx-power: 2, remote-tx-power: 3,"
       " remote-rx-power: 4, phase-values: {hba-port: 0x10000, electrical: 5, optical: 6, traffic: 7}}"});
  DPortResultRecord record = {};
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 0u);
  EXPECT_EQ(record.start_time.View(), "2026-03-14 09:26:53\n");
  EXPECT_EQ(record.stop_time.View(), "2026-03-14 09:26:53\n");
  EXPECT_EQ(record.roundtrip_latency_ns, 0x02010000u);
  EXPECT_EQ(record.cable_length_m, 0x03000000u);
  EXPECT_EQ(record.local_tx_power, 0x0100);
  EXPECT_EQ(record.local_rx_power, 0x0200);
  EXPECT_EQ(record.ingress_remote_power, 0x0300);
  EXPECT_EQ(record.egress_remote_power, 0x0400);
  EXPECT_EQ(record.hba_port_value, 0x10000u);
  EXPECT_EQ(record.electrical_loopback_value, 5);
  EXPECT_EQ(record.optical_loopback_value, 6);
  EXPECT_EQ(record.link_traffic_value, 7);
  EXPECT_EQ(record.hba_port_status, 1);
  EXPECT_EQ(record.link_traffic_status, 1);
  EXPECT_EQ(record.mailbox_1 & 15, 0);
}

TEST_F(Diagnostics, LinkTestFailsByItsPhases) {
  UseDiagnostics(
      {"diagnostic-port: true", "link-test: {phases: {optical: failed, traffic: 200}, start: a, stop: b}"});
  DPortResultRecord record = {};
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 0u);
  EXPECT_EQ(record.start_time.View(), "a");
  EXPECT_EQ(record.stop_time.View(), "b");
  EXPECT_EQ(record.hba_port_status, 3);
  EXPECT_EQ(record.electrical_loopback_status, 1);
  EXPECT_EQ(record.optical_loopback_status, 3);
  EXPECT_EQ(record.link_traffic_status, 200);
  EXPECT_NE(record.mailbox_1 & 15, 2);
}

TEST_F(Diagnostics, LinkTestGivesItsReason) {
  UseDiagnostics(
      {"diagnostic-port: true", "link-test: {reason: no-dynamic-mode, phases: {hba-port: stopped}}"});
  const DPortResultRecord record = TORPI_DiagnosticDPortTest(HandleAt(0), nullptr);
  EXPECT_EQ(record.hba_port_status, 6);
  EXPECT_EQ(record.mailbox_1 & 15, 2);
  EXPECT_EQ(record.mailbox_2, 5);
}

TEST_F(Diagnostics, LinkTestCanBeRefusedByTheFirmware) {
  UseDiagnostics({"diagnostic-port: true", "link-test: {refused: no-wrap}"});
  DPortResultRecord record = {};
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 0u);
  EXPECT_EQ(record.mailbox_1, 0x4005);
  EXPECT_EQ(record.mailbox_2, 0x60);
}

TEST_F(Diagnostics, LinkTestNeedsItsPort) {
  DPortResultRecord record = {};
  UseDiagnostics({});
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 129u);
  UseDiagnostics({"diagnostic-port: true"}, "hazel", "        link: down\n");
  NextRun();
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 130u);
  UseDiagnostics({"diagnostic-port: true"}, "hazel", "        speed: 8\n");
  NextRun();
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 131u);
  UseDiagnostics({"diagnostic-port: true"}, "hazel", "        type: npiv\n");
  NextRun();
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 29u);
  UseDiagnostics({"diagnostic-port: true"}, "elm");
  NextRun();
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), &record), 38u);
  EXPECT_EQ(TORPI_DiagnosticDPortTestV2(HandleAt(0), nullptr), 903u);
}

TEST_F(Diagnostics, PingCountsItsPasses) {
  UseDiagnostics({"ping: {fails: [3, 8]}"});
  std::uint32_t good = 0;
  EXPECT_EQ(Ping(2, false), 0u);
  EXPECT_EQ(Ping(4, true, &good), 906u);  // ends with the third pass of the run
  EXPECT_EQ(good, 0u);
  EXPECT_EQ(Ping(4, false), 0u);
  EXPECT_EQ(Ping(4, false, &good), 906u);
  EXPECT_EQ(good, 3u);
}

TEST_F(Diagnostics, PingAndCtNeedATargetAndALink) {
  UseDiagnostics({});
  std::uint32_t value = 0;
  EXPECT_EQ(Ping(1, true, nullptr, "50:06:0b:00:3b:20:11:c1"), 905u);
  EXPECT_EQ(Ping(1, true, nullptr, "nonsense"), 905u);
  EXPECT_EQ(Ping(1, true, nullptr, nullptr), 903u);
  EXPECT_EQ(TORPI_DiagnosticsCTCommand(HandleAt(0), kTarget, 1, 0, &value, nullptr, 256, 2), 0u);
  EXPECT_EQ(TORPI_DiagnosticsCTCommand(HandleAt(0), kTarget, 1, 0, &value, nullptr, 256, 3), 903u);
  UseDiagnostics({}, "hazel", "        link: down\n");
  NextRun();
  EXPECT_EQ(Ping(1, true), 130u);
}

TEST_F(Diagnostics, CtFailsApartFromThePing) {
  UseDiagnostics({"ct: {fails: all}"});
  std::uint32_t value = 0;
  EXPECT_EQ(Ping(5, true), 0u);
  EXPECT_EQ(TORPI_DiagnosticsCTCommand(HandleAt(0), kTarget, 5, 0, &value, nullptr, 256, 1), 906u);
  EXPECT_EQ(value, 0u);
}

TEST_F(Diagnostics, EchoAnswersInTurn) {
  UseDiagnostics(
      {"echo: {fails: [2], response-us: [250, 500], response-length: 64, status: heard, failed-status: "
       "lost}"});
  const EchoElsResult first = Echo();
  EXPECT_EQ(first.frames_received, 1u);
  EXPECT_EQ(first.response_length, 64u);
  EXPECT_EQ(first.outcome, 0u);
  EXPECT_EQ(first.echo_status.View(), "heard");
  EXPECT_EQ(first.response_time_ms, 0.25F);
  const EchoElsResult second = Echo();
  EXPECT_EQ(second.frames_sent, 1u);
  EXPECT_EQ(second.frames_received, 0u);
  EXPECT_NE(second.outcome, 0u);
  EXPECT_EQ(second.echo_status.View(), "lost");
  EXPECT_EQ(second.response_time_ms, 0.0F);
  EXPECT_EQ(Echo().response_time_ms, 0.25F);
  EXPECT_EQ(Echo().response_time_ms, 0.5F);
}

TEST_F(Diagnostics, EchoKnowsTheFabric) {
  UseDiagnostics({}, "hazel", "        principal-fabric: 10:00:00:00:00:00:00:01\n");
  EXPECT_EQ(Echo(3, "10:00:00:00:00:00:00:01").outcome, 0u);
  EchoElsResult result = {};
  EXPECT_EQ(TORPI_DiagnosticsEchoElsTest(HandleAt(0), "10:00:00:00:00:00:00:01", 1, 0, 2, &result), 905u);
  EXPECT_EQ(TORPI_DiagnosticsEchoElsTest(HandleAt(0), kTarget, 1, 0, 3, &result), 905u);
}

TEST_F(Diagnostics, LoopbackFailsByPassPatternAndSize) {
  UseDiagnostics(
      {"loopback: {fails: [2], fails-with: [cjtpat, custom], fails-from-size: 4096, crc-errors: 3,"
       " failed-status: Bad}"});
  DiagTestRequest request = Request();
  EXPECT_EQ(Loopback(request), "Success 0");
  EXPECT_EQ(Loopback(request), "Bad 15");
  EXPECT_EQ(Loopback(request), "Success 0");
  request.pattern_kind = DataPatternKind::kCjtpat;
  EXPECT_EQ(Loopback(request), "Bad 15");
  request.pattern_kind = DataPatternKind::kCspat;
  request.data_size = 4096;
  EXPECT_EQ(Loopback(request), "Bad 15");
  request.data_size = 4095;
  EXPECT_EQ(Loopback(request), "Success 0");
  request.pattern_kind = static_cast<DataPatternKind>(32);
  EXPECT_EQ(Loopback(request), "Success 0");
}

TEST_F(Diagnostics, LoopbackErrorsCountTransfers) {
  UseDiagnostics({"loopback: {fails: all, crc-errors: 3}"});
  DiagTestRequest request = Request();
  request.on_error = OnErrorAction::kStop;
  EXPECT_EQ(Loopback(request), "Failed 3");
  request = Request(0xFFFFFFFF);
  EXPECT_EQ(Loopback(request), "Failed 4294967295");
}

TEST_F(Diagnostics, LoopbackNeedsItsPlugOnlyOutside) {
  UseDiagnostics({"loopback: {plug: false}"});
  DiagTestRequest request = Request();
  EXPECT_EQ(Loopback(request), "Failed 5");
  request.loopback_type = LoopbackType::kInternal;
  EXPECT_EQ(Loopback(request), "Success 0");
}

TEST_F(Diagnostics, RWBufferReachesTheTargets) {
  UseDiagnostics({"rwbuffer: {fails: [2], miscompares: 2}"});
  EXPECT_EQ(RWBuffer(Request()), "Success 0;");
  EXPECT_EQ(RWBuffer(Request()), "Failed 10;");
  const DiagTestRequest request = Request();
  RWBufferResult* const list = TORPI_DiagnosticsReadWriteBufferTest(HandleAt(0), &request);
  EXPECT_TRUE((list->port_id == PortId{1, 2, 3}));
  EXPECT_EQ(TORPI_FreeRWBufferTestResultList(list), 0u);
  EXPECT_EQ(TORPI_FreeRWBufferTestResultList(list), 903u);
}

TEST_F(Diagnostics, RWBufferReachesTheRemotePortsOfTheHostFile) {
  UseDiagnostics({"rwbuffer:", "  remote-ports: [{port-id: 01:00:00}, {port-id: 02:00:00, fails: true}]"});
  EXPECT_EQ(RWBuffer(Request()), "Success 0;Failed 5;");
}

TEST_F(Diagnostics, RWBufferWithoutAnyPortHasNoResult) {
  UseDiagnostics({"rwbuffer: {remote-ports: []}"});
  EXPECT_EQ(RWBuffer(Request()), "null");
}

TEST_F(Diagnostics, RecordsOfAFaultAreZero) {
  UseDiagnostics({"diagnostic-port: true"});
  setenv(
      "TORPI_LAB_FAULTS",
      "TORPI_DiagnosticDPortTest=5,TORPI_DiagnosticsLoopBackTest=5,TORPI_DiagnosticsReadWriteBufferTest=null",
      1);
  EXPECT_EQ(TORPI_DiagnosticDPortTest(HandleAt(0), nullptr).mailbox_1, 0);
  EXPECT_EQ(Loopback(Request()), " 0");
  EXPECT_EQ(RWBuffer(Request()), "null");
}

TEST_F(Diagnostics, NqnIsRegisteredOnce) {
  UseDiagnostics({});
  std::uint8_t registered = 0xEE;
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 0), 159u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 1), 0u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 1), 158u);
  EXPECT_EQ(TORPI_GetNVMeHostNQNStatus(HandleAt(0), &registered), 0u);
  EXPECT_EQ(registered, 1);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 0), 0u);
  EXPECT_EQ(TORPI_GetNVMeHostNQNStatus(HandleAt(0), &registered), 0u);
  EXPECT_EQ(registered, 0);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 2), 903u);
}

TEST_F(Diagnostics, NqnNeedsAFamilyAndALink) {
  std::uint8_t registered = 0xEE;
  UseDiagnostics({}, "elm");
  EXPECT_EQ(TORPI_GetNVMeHostNQNStatus(HandleAt(0), &registered), 121u);
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 1), 121u);
  UseDiagnostics({}, "hazel", "        link: down\n");
  NextRun();
  EXPECT_EQ(TORPI_RegisterDeregisterNVMeHostNQN(HandleAt(0), 1), 151u);
}

TEST_F(Diagnostics, PassesTakeTheirTime) {
  UseDiagnostics({"ping: {pass-ms: 30}"});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Ping(3, true), 0u);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(90));
}

TEST_F(Diagnostics, MaintenanceModeAnswersEveryCall) {
  UseDiagnostics({}, "hazel", "        maintenance: true\n");
  EXPECT_EQ(Ping(1, true), 150u);
  EXPECT_EQ(TORPI_ConfigureAdapterDPortSettings(HandleAt(0), 1, 0), 150u);
  EXPECT_EQ(Loopback(Request()), " 0");
  EXPECT_EQ(RWBuffer(Request()), "null");
}

TEST_F(Diagnostics, WithoutARequestThereIsNoResult) {
  UseDiagnostics({});
  EXPECT_TRUE(TORPI_DiagnosticsLoopBackTest(HandleAt(0), nullptr).test_status.Empty());
  EXPECT_EQ(TORPI_DiagnosticsReadWriteBufferTest(HandleAt(0), nullptr), nullptr);
}

TEST_F(Diagnostics, TraceShowsTheRequest) {
  UseDiagnostics({});
  DiagTestRequest request = Request(9);
  request.connection_mode = static_cast<ConnectionMode>(3);
  std::memcpy(request.pattern, "01010101", 8);
  Loopback(request);
  EXPECT_NE(Read("trace").find("(port=FC_21:00:00:0e:1e:11:00:00, 9, 0, 9, 1, 2, 64, \"01010101\", 3) -> 0"
                               " status=\"Success\"\n"),
            std::string::npos)
      << Read("trace");
}

using Mistake = std::array<const char*, 2>;

class DiagnosticsMistakes : public Diagnostics, public testing::WithParamInterface<Mistake> {};

TEST_P(DiagnosticsMistakes, AreReportedWithLineAndKey) {
  UseDiagnostics({GetParam()[0]});
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  const std::string reported = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(reported.starts_with(Path("lab.yaml") + ":8:")) << reported;
  EXPECT_NE(reported.find(std::string(": ") + GetParam()[1]), std::string::npos) << reported;
}

INSTANTIATE_TEST_SUITE_P(
    Keys, DiagnosticsMistakes,
    testing::Values(
        Mistake{"nonsense: 1",
                "nonsense: expected one of the keys diagnostic-port, diagnostic-port-needs-reboot,"},
        Mistake{"diagnostic-port: perhaps", "diagnostic-port: expected true or false, got 'perhaps'"},
        Mistake{"ping: {fails: [0]}", "fails: expected a number from 1 to 4294967295, got '0'"},
        Mistake{"ping: {fails: some}", "fails: expected a list, got 'some'"},
        Mistake{"echo: {response-us: []}", "response-us: expected at least one number, got none"},
        Mistake{"loopback: {fails-with: [noise]}",
                "fails-with: expected one of random, crpat, cjtpat, cspat, custom, fixed"},
        Mistake{"rwbuffer: {remote-ports: [{port-id: 1}]}",
                "port-id: expected 3 hexadecimal octets joined by ':'"},
        Mistake{"link-test: {phases: {optical: bad}}",
                "optical: expected one of not-started, passed, skipped,"},
        Mistake{"link-test: {tx-power: 65536}", "tx-power: expected a number from 0 to 65535, got '65536'"},
        Mistake{"link-test: {reason: 16}",
                "reason: expected one of rejected, wrong-phase, retries, timeout,"}));

}  // namespace
