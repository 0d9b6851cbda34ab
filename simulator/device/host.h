// The host: the records that callers see, and the state that calls work on.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/faults.h"
#include "device/config_setup.h"
#include "device/congestion_setup.h"
#include "device/diag_setup.h"
#include "device/family_table.h"
#include "device/port_report_setup.h"
#include "device/sfp_module.h"
#include "device/target_set.h"
#include "framework/device_library/adapter_records.h"
#include "framework/device_library/device_handle.h"
#include "framework/device_library/fixed_text.h"
#include "framework/device_library/flash_records.h"
#include "framework/device_library/port_entry.h"

namespace lab {

// The library's boot modes.
inline constexpr std::uint32_t kBootModeBios = 1;
inline constexpr std::uint32_t kBootModeUefi = 2;
inline constexpr std::uint32_t kBootModeNvme = 4;

enum class Chatter { kUnset, kOff, kPortCalls, kAllCalls };

// One protocol entry: the record that callers see, and what each group of calls needs.
struct Entry {
  FCProtocolEntry record{};
  DiagSetup diag;
  TargetSet targets;
  std::shared_ptr<SfpModule> sfp;  // null: the cage is empty. Virtual ports share the module of their port
  CongestionSetup congestion;
  ConfigSetup config;
  PortReportSetup reports;
};

struct Port {
  PhyPortEntry record{};
  ProtocolList list{};
  bool has_list = true;
  std::vector<Entry> entries;  // the first one is the port itself, the others its virtual ports
};

struct Adapter {
  AdapterEntry record{};
  PortList list{};
  bool has_list = false;
  std::vector<Port> ports;

  const Family* family = nullptr;
  std::uint16_t device_id = 0;
  std::string driver_version;
  std::string running_firmware;
  ComponentVersion running_mpi{};
  ComponentVersion running_pep{};
  FlashComponentVersions flash{};
  FlashMemoBlock memo{};
  std::uint8_t personality = 0;
  bool personality_change_allowed = false;
  bool firmware_lockdown = false;
  bool mezzanine = false;
  bool restarted = false;  // since the host file was read; see state/running_state.h

  // Names the adapter in the state file: "ZX100/AB12345", with "#2" and so on after the name for
  // further ones.
  std::string state_key;
};

struct Host {
  AdapterList list{};
  std::vector<Adapter> adapters;
  bool no_list = false;
  bool reboot_required = false;
  std::uint32_t boot_mode = kBootModeBios;  // of the whole process
  Chatter chatter = Chatter::kUnset;
  FaultQueue faults;
};

// What a valid memo block begins with.
inline constexpr char kMemoSignature[] = "FMBS";

// A port as a call names it.
struct PortRef {
  Adapter* adapter;
  Entry* entry;
};

// An adapter of `family` with everything that the family decides, and one protocol entry of such an adapter.
// `index` is the adapter's place in the host; names that the host file leaves out are made from it.
Adapter MakeAdapter(const Family& family, std::size_t index);
FCProtocolEntry MakeProtocolEntry(const Adapter& adapter, std::size_t index, std::uint32_t port_number);

// Ties the records together once the host is complete: chains, counts, state keys and port handles. The host
// must not move afterwards.
void LinkHost(Host& host);

// Stores a version as a port's record holds it: three numbers and a zero.
void StoreVersion(std::uint8_t (&field)[4], ComponentVersion version);

// Copies the adapter's flash version texts into the records of its ports.
void RefreshPortVersions(Adapter& adapter);

// Zeroes the counters of the port's firmware.
void ResetCounters(Entry& entry);

// The port that a handle names by its content; false for a handle that LinkHost did not make.
bool FindPort(Host& host, const DeviceHandle& handle, PortRef& out);

// The same for the number alone, which the calls of the older interface take.
bool FindPort(Host& host, std::uint32_t sd_handle, PortRef& out);

}  // namespace lab
