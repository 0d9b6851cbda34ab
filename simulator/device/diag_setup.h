// How the diagnostic tests of a port go, by the host file, and how many passes have been made.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/device_library/port_id.h"

namespace lab {

// What the tests have in common: how long a pass takes and which passes fail.
struct TestPasses {
  std::uint32_t pass_ms = 0;
  bool all_fail = false;
  std::vector<std::uint32_t> failing;  // counted from 1 over all calls of a run
  std::uint32_t done = 0;
};

// The link test of a diagnostic port. Powers are in units of 0.1 microwatt.
struct LinkTest {
  std::uint32_t duration_ms = 0;
  std::uint32_t latency_ns = 262;
  std::uint32_t distance_m = 25;
  std::uint16_t tx_power = 6310;  // -2 dBm
  std::uint16_t rx_power = 5012;  // -3 dBm
  std::uint16_t remote_tx_power = 6166;
  std::uint16_t remote_rx_power = 5129;
  // The phases in the order of the test. Without a value, the port's own one passes when the others do.
  std::uint8_t electrical = 1;
  std::uint8_t optical = 1;
  std::uint8_t traffic = 1;
  std::optional<std::uint8_t> hba_port;
  std::uint32_t hba_port_value = 0;
  std::uint8_t electrical_value = 0;
  std::uint8_t optical_value = 0;
  std::uint8_t traffic_value = 0;
  std::optional<std::uint8_t> reason;    // why the test failed
  std::optional<std::uint16_t> refusal;  // why the firmware does not run it at all
  std::optional<std::string> start, stop;
};

struct EchoTest : TestPasses {
  std::vector<std::uint32_t> response_us = {412, 398, 405, 421};  // of the passes in turn
  std::uint32_t response_length = 116;
  std::string status = "Echo received";
  std::string failed_status = "No response";
};

// The loopback test and the read/write buffer test also fail by what they send.
struct DataTest : TestPasses {
  std::uint32_t failing_patterns = 0;         // bit N: pattern kind N
  std::optional<std::uint32_t> failing_size;  // and above
  std::string failed_status = "Failed";
};

struct LoopbackTest : DataTest {
  bool plug = true;  // closes the loop of an external test
  // Errors of one transfer of a failing pass.
  std::uint32_t crc_errors = 1;
  std::uint32_t disparity_errors = 0;
  std::uint32_t frame_length_errors = 0;
};

// Link errors that the read/write buffer test sees at one remote port, and whether its data come back wrong.
struct RWBufferPort {
  PortId port_id = {};
  bool fails = false;
  std::uint32_t link_failures = 0;
  std::uint32_t sync_losses = 0;
  std::uint32_t signal_losses = 0;
  std::uint32_t invalid_crcs = 0;
};

struct RWBufferTest : DataTest {
  std::uint32_t miscompares = 1;                          // of one transfer of a failing pass
  std::optional<std::vector<RWBufferPort>> remote_ports;  // without them: the port's targets
};

struct DiagSetup {
  bool diagnostic_port = false;
  bool diagnostic_port_needs_reboot = true;
  bool nqn_registered = false;
  LinkTest link;
  TestPasses ct;
  TestPasses ping;
  EchoTest echo;
  LoopbackTest loopback;
  RWBufferTest rw_buffer;
};

}  // namespace lab
