// Requests and results of the diagnostic tests of the device library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "framework/device_library/fixed_text.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/port_id.h"

// What a diagnostic port's link test found. Fields marked BE are big-endian, as the switch sends them.
struct DPortResultRecord {
  std::byte reserved_0[8];
  std::uint32_t roundtrip_latency_ns;  // BE
  std::uint32_t cable_length_m;        // BE
  std::byte reserved_16[36];
  std::uint32_t hba_port_value;
  std::uint8_t hba_port_status;
  std::uint8_t electrical_loopback_value;
  std::uint8_t electrical_loopback_status;
  std::uint8_t optical_loopback_value;
  std::uint8_t optical_loopback_status;
  std::uint8_t link_traffic_value;
  std::uint8_t link_traffic_status;
  std::byte reserved_63[1];
  FixedText<64> start_time;  // with its own line end
  FixedText<64> stop_time;   // with its own line end
  std::uint16_t mailbox_1;
  std::uint16_t mailbox_2;
  std::uint16_t egress_remote_power;   // BE, 0.1 microwatt
  std::uint16_t ingress_remote_power;  // BE, 0.1 microwatt
  std::byte reserved_200[2];
  std::uint16_t local_rx_power;  // BE, 0.1 microwatt
  std::uint16_t local_tx_power;  // BE, 0.1 microwatt
  std::byte reserved_206[34];
};
static_assert(offsetof(DPortResultRecord, roundtrip_latency_ns) == 8);
static_assert(offsetof(DPortResultRecord, cable_length_m) == 12);
static_assert(offsetof(DPortResultRecord, hba_port_value) == 52);
static_assert(offsetof(DPortResultRecord, hba_port_status) == 56);
static_assert(offsetof(DPortResultRecord, electrical_loopback_value) == 57);
static_assert(offsetof(DPortResultRecord, electrical_loopback_status) == 58);
static_assert(offsetof(DPortResultRecord, optical_loopback_value) == 59);
static_assert(offsetof(DPortResultRecord, optical_loopback_status) == 60);
static_assert(offsetof(DPortResultRecord, link_traffic_value) == 61);
static_assert(offsetof(DPortResultRecord, link_traffic_status) == 62);
static_assert(offsetof(DPortResultRecord, start_time) == 64);
static_assert(offsetof(DPortResultRecord, stop_time) == 128);
static_assert(offsetof(DPortResultRecord, mailbox_1) == 192);
static_assert(offsetof(DPortResultRecord, mailbox_2) == 194);
static_assert(offsetof(DPortResultRecord, egress_remote_power) == 196);
static_assert(offsetof(DPortResultRecord, ingress_remote_power) == 198);
static_assert(offsetof(DPortResultRecord, local_rx_power) == 202);
static_assert(offsetof(DPortResultRecord, local_tx_power) == 204);
static_assert(sizeof(DPortResultRecord) == 240);

// What one loopback pass found. The pass succeeded when the status text is "Success".
struct LoopbackResult {
  std::byte reserved_0[4];
  FixedText<64> test_status;
  std::uint32_t crc_errors;
  std::uint32_t disparity_errors;
  std::uint32_t frame_length_errors;
  std::byte reserved_80[340];
};
static_assert(offsetof(LoopbackResult, test_status) == 4);
static_assert(offsetof(LoopbackResult, crc_errors) == 68);
static_assert(offsetof(LoopbackResult, disparity_errors) == 72);
static_assert(offsetof(LoopbackResult, frame_length_errors) == 76);
static_assert(sizeof(LoopbackResult) == 420);

// What one echo frame came to. The echo came back well when `outcome` is 0.
struct EchoElsResult {
  std::uint32_t frames_sent;
  std::uint32_t frames_received;
  std::uint32_t response_length;
  std::uint32_t outcome;
  FixedText<72> echo_status;
  float response_time_ms;
};
static_assert(offsetof(EchoElsResult, frames_sent) == 0);
static_assert(offsetof(EchoElsResult, frames_received) == 4);
static_assert(offsetof(EchoElsResult, response_length) == 8);
static_assert(offsetof(EchoElsResult, outcome) == 12);
static_assert(offsetof(EchoElsResult, echo_status) == 16);
static_assert(offsetof(EchoElsResult, response_time_ms) == 88);
static_assert(sizeof(EchoElsResult) == 92);
static_assert(std::numeric_limits<float>::is_iec559, "the library stores IEEE single-precision numbers");

// Who answers an echo, as the echo call takes it.
enum class EchoDestination : std::uint32_t { kTarget = 2, kPrincipalFabric = 3 };

// What a test does when data comes back wrong.
enum class OnErrorAction : std::uint32_t { kIgnore = 0, kStop = 1, kLoop = 2 };

enum class LoopbackType : std::uint32_t { kInternal10Bit = 0, kExternal = 2, kFcoeEcho = 3, kInternal = 4 };

// The data that a test sends. CRPAT, CJTPAT and CSPAT are the compliant patterns of the FC-MJSQ report.
enum class DataPatternKind : std::uint32_t {
  kRandom = 0,
  kCrpat = 1,
  kCjtpat = 2,
  kCspat = 3,
  kCustom = 4,  // the pattern's characters are the user's
  kFixed = 5,   // the pattern's characters are eight binary digits
};

// The loopback test and the read/write buffer test as they are asked for. The caller zeroes it first.
struct DiagTestRequest {
  std::byte reserved_0[4];
  std::uint32_t test_count;
  std::byte reserved_8[4];
  OnErrorAction on_error;
  std::byte reserved_16[4];
  std::uint32_t test_count_again;
  DataPatternKind pattern_kind;
  LoopbackType loopback_type;
  std::uint32_t data_size;
  std::byte reserved_36[4];
  char pattern[8];  // not terminated
  std::byte reserved_48[75];
  ConnectionMode connection_mode;  // that of the port
  std::byte reserved_124[20];
};
static_assert(offsetof(DiagTestRequest, test_count) == 4);
static_assert(offsetof(DiagTestRequest, on_error) == 12);
static_assert(offsetof(DiagTestRequest, test_count_again) == 20);
static_assert(offsetof(DiagTestRequest, pattern_kind) == 24);
static_assert(offsetof(DiagTestRequest, loopback_type) == 28);
static_assert(offsetof(DiagTestRequest, data_size) == 32);
static_assert(offsetof(DiagTestRequest, pattern) == 40);
static_assert(offsetof(DiagTestRequest, connection_mode) == 123);
static_assert(sizeof(DiagTestRequest) == 144);

// What one pass of the read/write buffer test found at one remote port: a node of a list that the library
// makes and frees. The pass succeeded when the first node's status text is "Success".
struct RWBufferResult {
  std::byte reserved_0[4];
  FixedText<260> test_status;
  PortId port_id;
  std::byte reserved_267[1];
  std::uint32_t data_miscompares;
  std::uint32_t link_failures;
  std::uint32_t sync_losses;
  std::uint32_t signal_losses;
  std::uint32_t invalid_crcs;
  std::byte reserved_288[4448];
  RWBufferResult* next;
};
static_assert(offsetof(RWBufferResult, test_status) == 4);
static_assert(offsetof(RWBufferResult, port_id) == 264);
static_assert(offsetof(RWBufferResult, data_miscompares) == 268);
static_assert(offsetof(RWBufferResult, link_failures) == 272);
static_assert(offsetof(RWBufferResult, sync_losses) == 276);
static_assert(offsetof(RWBufferResult, signal_losses) == 280);
static_assert(offsetof(RWBufferResult, invalid_crcs) == 284);
static_assert(offsetof(RWBufferResult, next) == 4736);
static_assert(sizeof(RWBufferResult) == 4744);
