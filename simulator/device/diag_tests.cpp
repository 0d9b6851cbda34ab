#include "device/diag_tests.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "base/text.h"
#include "device/host.h"
#include "framework/device_library/target_records.h"

namespace lab {
namespace {

constexpr std::string_view kGoodStatus = "Success";

enum PhaseResult : std::uint8_t { kPassed = 1, kSkipped = 2, kFailed = 3 };

// The outcome of a link test in mailbox register 1.
enum Mailbox1 : std::uint16_t {
  kTestPassed = 0x4000,
  kTestFailedSilently = 0x4001,
  kTestFailedWithReason = 0x4002,
  kCommandRefused = 0x4005,
};

bool IsGood(std::uint8_t phase) {
  return phase == kPassed || phase == kSkipped;
}

void Wait(std::uint32_t milliseconds) {
  timespec left{static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

std::uint16_t BigEndian(std::uint16_t value) {
  return __builtin_bswap16(value);
}
std::uint32_t BigEndian(std::uint32_t value) {
  return __builtin_bswap32(value);
}

// How often a request's data are sent: a test that stops on an error sends no more after the first one.
std::uint32_t Transfers(const DiagTestRequest& request) {
  return request.on_error == OnErrorAction::kStop ? 1 : request.test_count;
}

std::uint32_t Errors(std::uint32_t per_transfer, const DiagTestRequest& request) {
  const std::uint64_t errors = std::uint64_t{per_transfer} * Transfers(request);
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(errors, UINT32_MAX));
}

bool MakeDataPass(DataTest& test, const DiagTestRequest& request) {
  const bool good = MakePass(test);
  const auto kind = static_cast<std::uint32_t>(request.pattern_kind);
  if (kind < 32 && (test.failing_patterns >> kind & 1) != 0) return false;
  return good && !(test.failing_size && request.data_size >= *test.failing_size);
}

std::string_view StatusText(const DataTest& test, bool good) {
  return good ? kGoodStatus : test.failed_status;
}

bool IsName(const WorldWideName& name, std::string_view text) {
  WorldWideName octets;
  return ReadOctets(text, octets.octets) && octets == name;
}

// The remote ports that the test reaches.
std::vector<RWBufferPort> PortsOf(const RWBufferTest& test, const FCProtocolEntry& port) {
  if (test.remote_ports) return *test.remote_ports;
  std::vector<RWBufferPort> ports;
  for (const TargetEntry* target = port.first_target; target != nullptr; target = target->next) {
    ports.emplace_back().port_id = target->port_id;
  }
  return ports;
}

}  // namespace

bool KnowsTarget(const FCProtocolEntry& port, std::string_view name) {
  for (const TargetEntry* target = port.first_target; target != nullptr; target = target->next) {
    if (IsName(target->port_name, name)) return true;
  }
  return false;
}

bool IsPrincipalFabric(const FCProtocolEntry& port, std::string_view name) {
  return IsName(port.principal_fabric_name, name);
}

bool MakePass(TestPasses& passes) {
  Wait(passes.pass_ms);
  ++passes.done;
  return !passes.all_fail &&
         std::find(passes.failing.begin(), passes.failing.end(), passes.done) == passes.failing.end();
}

PassCount MakePasses(TestPasses& passes, std::uint32_t count, bool stop_on_error) {
  PassCount made;
  for (std::uint32_t pass = 0; pass < count; ++pass) {
    ++(MakePass(passes) ? made.good : made.bad);
    if (made.bad > 0 && stop_on_error) break;
  }
  return made;
}

void MakeEcho(EchoTest& test, EchoElsResult& result) {
  const bool good = MakePass(test);
  result.frames_sent = 1;
  result.frames_received = good ? 1 : 0;
  result.response_length = good ? test.response_length : 0;
  result.outcome = good ? 0 : 1;
  StoreText(result.echo_status, good ? test.status : test.failed_status);
  const std::uint32_t microseconds = test.response_us[(test.done - 1) % test.response_us.size()];
  result.response_time_ms = good ? static_cast<float>(microseconds) / 1000.0F : 0.0F;
}

void MakeLinkTest(const LinkTest& test, std::string (*now)(), DPortResultRecord& record) {
  if (test.refusal) {
    record.mailbox_1 = kCommandRefused;
    record.mailbox_2 = *test.refusal;
    return;
  }
  StoreText(record.start_time, test.start ? *test.start : now());
  Wait(test.duration_ms);
  StoreText(record.stop_time, test.stop ? *test.stop : now());

  const bool all_good =
      IsGood(test.electrical) && IsGood(test.optical) && IsGood(test.traffic) && !test.reason;
  record.hba_port_value = test.hba_port_value;
  record.hba_port_status = test.hba_port.value_or(all_good ? kPassed : kFailed);
  record.electrical_loopback_value = test.electrical_value;
  record.electrical_loopback_status = test.electrical;
  record.optical_loopback_value = test.optical_value;
  record.optical_loopback_status = test.optical;
  record.link_traffic_value = test.traffic_value;
  record.link_traffic_status = test.traffic;
  record.mailbox_1 = all_good ? kTestPassed : test.reason ? kTestFailedWithReason : kTestFailedSilently;
  record.mailbox_2 = test.reason.value_or(0);

  record.roundtrip_latency_ns = BigEndian(test.latency_ns);
  record.cable_length_m = BigEndian(test.distance_m);
  record.egress_remote_power = BigEndian(test.remote_rx_power);
  record.ingress_remote_power = BigEndian(test.remote_tx_power);
  record.local_rx_power = BigEndian(test.rx_power);
  record.local_tx_power = BigEndian(test.tx_power);
}

void MakeLoopback(LoopbackTest& test, const DiagTestRequest& request, LoopbackResult& result) {
  const bool open = request.loopback_type == LoopbackType::kExternal && !test.plug;
  const bool good = MakeDataPass(test, request) && !open;
  StoreText(result.test_status, StatusText(test, good));
  if (good) return;
  result.crc_errors = Errors(test.crc_errors, request);
  result.disparity_errors = Errors(test.disparity_errors, request);
  result.frame_length_errors = Errors(test.frame_length_errors, request);
}

std::unique_ptr<RWBufferList> MakeRWBuffer(RWBufferTest& test, const DiagTestRequest& request,
                                           const FCProtocolEntry& port) {
  const bool good = MakeDataPass(test, request);
  const std::vector<RWBufferPort> ports = PortsOf(test, port);
  auto list = std::make_unique<RWBufferList>(ports.size());
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const RWBufferPort& from = ports[i];
    RWBufferResult& result = (*list)[i];
    const bool failed = !good || from.fails;
    StoreText(result.test_status, StatusText(test, !failed));
    result.port_id = from.port_id;
    result.data_miscompares = failed ? Errors(test.miscompares, request) : 0;
    result.link_failures = from.link_failures;
    result.sync_losses = from.sync_losses;
    result.signal_losses = from.signal_losses;
    result.invalid_crcs = from.invalid_crcs;
    result.next = i + 1 < ports.size() ? &(*list)[i + 1] : nullptr;
  }
  return list;
}

}  // namespace lab
