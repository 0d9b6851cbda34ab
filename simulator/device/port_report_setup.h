// What the reports of a port show beyond its records, by the host file.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "device/sfp_module.h"
#include "framework/device_library/world_wide_name.h"

namespace lab {

inline constexpr std::size_t kLargestVpd = 1024;
inline constexpr std::size_t kLargestRdpResponse = 508;

// One lockdown: whether it is on, or the status word of a failure to read it.
struct Lockdown {
  bool on = false;
  std::uint32_t status = 0;
};

struct LockdownSetup {
  Lockdown config;
  Lockdown firmware_update;
  Lockdown mpi;
};

struct VpdSetup {
  bool none = false;                 // the adapter refuses to read its VPD
  std::optional<std::string> bytes;  // the whole image; else it is built from what follows
  std::optional<std::string> name;
  // Items by their keywords, which replace those of the adapter's record; without a value, the item is left
  // out.
  std::map<std::string, std::optional<std::string>> items;
};

// The optical module of the switch: texts that differ from those of the port's own module, and measured
// values.
struct SwitchModule {
  std::optional<std::string> vendor, part, serial, revision, date;
  SfpMeasured measured;
  std::optional<std::uint16_t> flags;
};

struct RdpSetup {
  bool no_answer = false;
  std::optional<std::string> bytes;  // the whole response; else it is built from what follows
  std::optional<WorldWideName> node_name;
  std::optional<WorldWideName> port_name;
  std::uint32_t link_errors[6] = {};
  std::optional<std::uint32_t> corrected_blocks, uncorrected_blocks;  // without them: by error correction
  std::uint32_t credits = 32;
  std::uint32_t attached_credits = 80;
  std::uint32_t round_trip_ns = 250;
  SwitchModule module;
};

struct DumpSetup {
  bool none = false;
  std::optional<std::string> bytes;
  std::uint32_t size = 65536;  // of a dump that the simulation makes up
};

struct PortReportSetup {
  std::int16_t temperature = 46;
  LockdownSetup lockdown;
  VpdSetup vpd;
  RdpSetup rdp;
  DumpSetup dump;
  bool counters_reset = false;  // since the host file was read
};

}  // namespace lab
