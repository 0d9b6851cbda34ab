#include "host_file/diag_keys.h"

#include "framework/device_library/diag_records.h"

namespace lab {
namespace {

constexpr NamedNumber kPhaseResults[] = {
    {"not-started", 0}, {"passed", 1},  {"skipped", 2},        {"failed", 3},         {"running", 4},
    {"remote-port", 5}, {"stopped", 6}, {"not-supported", 78}, {"memory-error", 115},
};
constexpr NamedNumber kReasons[] = {
    {"rejected", 1}, {"wrong-phase", 2},     {"retries", 3},
    {"timeout", 4},  {"no-dynamic-mode", 5}, {"stopped", 6},
};
constexpr NamedNumber kRefusals[] = {
    {"not-ready", 0x07},   {"invalid-request", 0x15}, {"not-allowed", 0x3A},
    {"wrong-state", 0x47}, {"no-wrap", 0x60},         {"no-switch-support", 0x8061},
};
constexpr NamedNumber kPatterns[] = {
    {"random", 0}, {"crpat", 1}, {"cjtpat", 2}, {"cspat", 3}, {"custom", 4}, {"fixed", 5},
};

constexpr std::size_t kTimeBytes = sizeof DPortResultRecord{}.start_time.bytes;
constexpr std::size_t kStatusBytes = sizeof LoopbackResult{}.test_status.bytes;
constexpr std::size_t kEchoStatusBytes = sizeof EchoElsResult{}.echo_status.bytes;

// "all", or a list of the passes that fail.
void ReadFails(const Value& value, TestPasses& into) {
  into.all_fail = value.Is("all");
  into.failing.clear();
  if (into.all_fail) return;
  value.EachItem([&](const Value& item) {
    into.failing.push_back(static_cast<std::uint32_t>(item.Number(1, UINT32_MAX)));
  });
}

void ReadPatterns(const Value& list, DataTest& into) {
  into.failing_patterns = 0;
  list.EachItem([&](const Value& item) { into.failing_patterns |= 1u << item.Choice(kPatterns); });
}

// Rows that several tests have.
template <typename Test>
constexpr KeyRow<Test> kPassMs = {"pass-ms",
                                  [](const Value& value, Test& into) { value.Into(into.pass_ms); }};
template <typename Test>
constexpr KeyRow<Test> kFails = {"fails", [](const Value& value, Test& into) { ReadFails(value, into); }};
template <typename Test>
constexpr KeyRow<Test> kFailsWith = {"fails-with",
                                     [](const Value& value, Test& into) { ReadPatterns(value, into); }};
template <typename Test>
constexpr KeyRow<Test> kFailsFromSize = {
    "fails-from-size", [](const Value& value, Test& into) { value.Into(into.failing_size.emplace()); }};
template <typename Test>
constexpr KeyRow<Test> kFailedStatus = {
    "failed-status", [](const Value& value, Test& into) { into.failed_status = value.Text(kStatusBytes); }};

constexpr KeyRow<TestPasses> kPassKeys[] = {kPassMs<TestPasses>, kFails<TestPasses>};

constexpr KeyRow<EchoTest> kEchoKeys[] = {
    kPassMs<EchoTest>,
    kFails<EchoTest>,
    {"response-us",
     [](const Value& value, EchoTest& into) {
       into.response_us.clear();
       value.EachItem([&](const Value& item) { item.Into(into.response_us.emplace_back()); });
       if (into.response_us.empty()) value.Wrong("response-us: expected at least one number, got none");
     }},
    {"response-length", [](const Value& value, EchoTest& into) { value.Into(into.response_length); }},
    {"status", [](const Value& value, EchoTest& into) { into.status = value.Text(kEchoStatusBytes); }},
    {"failed-status",
     [](const Value& value, EchoTest& into) { into.failed_status = value.Text(kEchoStatusBytes); }},
};

constexpr KeyRow<LoopbackTest> kLoopbackKeys[] = {
    kPassMs<LoopbackTest>,
    kFails<LoopbackTest>,
    kFailsWith<LoopbackTest>,
    kFailsFromSize<LoopbackTest>,
    kFailedStatus<LoopbackTest>,
    {"plug", [](const Value& value, LoopbackTest& into) { value.Into(into.plug); }},
    {"crc-errors", [](const Value& value, LoopbackTest& into) { value.Into(into.crc_errors); }},
    {"disparity-errors", [](const Value& value, LoopbackTest& into) { value.Into(into.disparity_errors); }},
    {"frame-length-errors",
     [](const Value& value, LoopbackTest& into) { value.Into(into.frame_length_errors); }},
};

constexpr KeyRow<RWBufferPort> kRWBufferPortKeys[] = {
    {"port-id", [](const Value& value, RWBufferPort& into) { value.Octets(into.port_id.octets); }},
    {"fails", [](const Value& value, RWBufferPort& into) { value.Into(into.fails); }},
    {"link-failures", [](const Value& value, RWBufferPort& into) { value.Into(into.link_failures); }},
    {"sync-losses", [](const Value& value, RWBufferPort& into) { value.Into(into.sync_losses); }},
    {"signal-losses", [](const Value& value, RWBufferPort& into) { value.Into(into.signal_losses); }},
    {"invalid-crcs", [](const Value& value, RWBufferPort& into) { value.Into(into.invalid_crcs); }},
};

constexpr KeyRow<RWBufferTest> kRWBufferKeys[] = {
    kPassMs<RWBufferTest>,
    kFails<RWBufferTest>,
    kFailsWith<RWBufferTest>,
    kFailsFromSize<RWBufferTest>,
    kFailedStatus<RWBufferTest>,
    {"miscompares", [](const Value& value, RWBufferTest& into) { value.Into(into.miscompares); }},
    {"remote-ports",
     [](const Value& value, RWBufferTest& into) {
       auto& ports = into.remote_ports.emplace();
       value.EachItem([&](const Value& item) { ReadMap(item, kRWBufferPortKeys, ports.emplace_back()); });
     }},
};

constexpr KeyRow<LinkTest> kPhaseKeys[] = {
    {"hba-port",
     [](const Value& value, LinkTest& into) { value.CodeInto(kPhaseResults, into.hba_port.emplace()); }},
    {"electrical",
     [](const Value& value, LinkTest& into) { value.CodeInto(kPhaseResults, into.electrical); }},
    {"optical", [](const Value& value, LinkTest& into) { value.CodeInto(kPhaseResults, into.optical); }},
    {"traffic", [](const Value& value, LinkTest& into) { value.CodeInto(kPhaseResults, into.traffic); }},
};

constexpr KeyRow<LinkTest> kPhaseValueKeys[] = {
    {"hba-port", [](const Value& value, LinkTest& into) { value.Into(into.hba_port_value); }},
    {"electrical", [](const Value& value, LinkTest& into) { value.Into(into.electrical_value); }},
    {"optical", [](const Value& value, LinkTest& into) { value.Into(into.optical_value); }},
    {"traffic", [](const Value& value, LinkTest& into) { value.Into(into.traffic_value); }},
};

constexpr KeyRow<LinkTest> kLinkTestKeys[] = {
    {"duration-ms", [](const Value& value, LinkTest& into) { value.Into(into.duration_ms); }},
    {"latency-ns", [](const Value& value, LinkTest& into) { value.Into(into.latency_ns); }},
    {"distance-m", [](const Value& value, LinkTest& into) { value.Into(into.distance_m); }},
    {"tx-power", [](const Value& value, LinkTest& into) { value.Into(into.tx_power); }},
    {"rx-power", [](const Value& value, LinkTest& into) { value.Into(into.rx_power); }},
    {"remote-tx-power", [](const Value& value, LinkTest& into) { value.Into(into.remote_tx_power); }},
    {"remote-rx-power", [](const Value& value, LinkTest& into) { value.Into(into.remote_rx_power); }},
    {"phases", [](const Value& value, LinkTest& into) { ReadMap(value, kPhaseKeys, into); }},
    {"phase-values", [](const Value& value, LinkTest& into) { ReadMap(value, kPhaseValueKeys, into); }},
    {"reason",
     [](const Value& value, LinkTest& into) {
       into.reason = static_cast<std::uint8_t>(value.ChoiceOrNumber(kReasons, 15));
     }},
    {"refused",
     [](const Value& value, LinkTest& into) { value.CodeInto(kRefusals, into.refusal.emplace()); }},
    {"start", [](const Value& value, LinkTest& into) { into.start = value.Text(kTimeBytes); }},
    {"stop", [](const Value& value, LinkTest& into) { into.stop = value.Text(kTimeBytes); }},
};

constexpr KeyRow<DiagSetup> kDiagKeys[] = {
    {"diagnostic-port", [](const Value& value, DiagSetup& into) { value.Into(into.diagnostic_port); }},
    {"diagnostic-port-needs-reboot",
     [](const Value& value, DiagSetup& into) { value.Into(into.diagnostic_port_needs_reboot); }},
    {"nqn-registered", [](const Value& value, DiagSetup& into) { value.Into(into.nqn_registered); }},
    {"link-test", [](const Value& value, DiagSetup& into) { ReadMap(value, kLinkTestKeys, into.link); }},
    {"ct", [](const Value& value, DiagSetup& into) { ReadMap(value, kPassKeys, into.ct); }},
    {"ping", [](const Value& value, DiagSetup& into) { ReadMap(value, kPassKeys, into.ping); }},
    {"echo", [](const Value& value, DiagSetup& into) { ReadMap(value, kEchoKeys, into.echo); }},
    {"loopback", [](const Value& value, DiagSetup& into) { ReadMap(value, kLoopbackKeys, into.loopback); }},
    {"rwbuffer", [](const Value& value, DiagSetup& into) { ReadMap(value, kRWBufferKeys, into.rw_buffer); }},
};

}  // namespace

void ReadDiagnostics(const Value& map, DiagSetup& setup) {
  ReadMap(map, kDiagKeys, setup);
}

StateNode DiagnosticsState(const DiagSetup& setup) {
  StateNode node;
  node["diagnostic-port"] = setup.diagnostic_port;
  node["nqn-registered"] = setup.nqn_registered;
  return node;
}

}  // namespace lab
