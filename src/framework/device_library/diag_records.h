// Results of the link tests that the device library returns by value.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/records.h"

// What a diagnostic port's link test found. Fields marked BE are big-endian as the switch sent them.
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
