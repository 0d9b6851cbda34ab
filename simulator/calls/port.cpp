// Port reports: temperature, lockdown, statistics, vital product data, link diagnostics, firmware dump.
#include <cstdlib>

#include "calls/call.h"
#include "framework/device_library/calls.h"
#include "images/port_reports.h"

using lab::Call;

namespace {

// Families of the older kind have neither a sensor nor, but for the newest three, a management processor.
bool HasSensor(const Call& call) {
  return call.adapter().family->personality_call || call.adapter().family->nvme;
}

void StoreLockdown(const lab::Lockdown& lockdown, std::uint8_t& flag, LockdownReadStatus& status) {
  flag = lockdown.on ? 1 : 0;
  status = static_cast<LockdownReadStatus>(lockdown.status);
}

// The size that the caller tells, for the trace.
std::uint32_t RoomIn(const std::uint32_t* size) {
  return size == nullptr ? 0 : *size;
}

// Copies the bytes into a buffer of *size bytes, as far as they fit, and tells how many there are.
std::uint32_t HandOver(Call& call, const std::string& bytes, std::uint8_t* out, std::uint32_t* size) {
  if (out == nullptr || size == nullptr || bytes.size() > *size) return lab::kBadArgument;
  bytes.copy(reinterpret_cast<char*>(out), bytes.size());
  *size = static_cast<std::uint32_t>(bytes.size());
  call.Out("size", *size);
  return lab::kSuccess;
}

// Failures of the firmware dump that callers know, and those of the simulation's own, which it adds to.
constexpr std::uint32_t kNoDumpMemory = 0x20000072;
constexpr std::uint32_t kNoDump = 0x2000007B;

std::uint32_t HandOverDump(Call& call, void** out_buffer, std::uint32_t* out_size) {
  if (out_buffer == nullptr || out_size == nullptr) return lab::kOlderInterfaceFailure + lab::kBadArgument;
  if (call.port().reports.dump.none) return kNoDump;
  const std::string dump = lab::ComposeFirmwareDump(call.adapter(), call.port());
  void* const buffer = std::malloc(dump.size() + 1);  // of a dump of no bytes too
  if (buffer == nullptr) return kNoDumpMemory;
  dump.copy(static_cast<char*>(buffer), dump.size());
  *out_buffer = buffer;
  *out_size = static_cast<std::uint32_t>(dump.size());
  call.Out("size", *out_size);
  return lab::kSuccess;
}

}  // namespace

LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle* handle, BoardTemperature* out) {
  return lab::ServePort("TORPI_GetAdapterAsicBoardTemperature", handle, {}, [=](Call& call) {
    if (out == nullptr) return lab::kBadArgument;
    if (!HasSensor(call)) return lab::kNotForThisAdapter;
    out->celsius = call.port().reports.temperature;
    call.Out("celsius", std::to_string(out->celsius));
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle* handle, LockdownStatus* out) {
  return lab::ServePort("TORPI_GetLockdownStatus", handle, {}, [=](Call& call) {
    if (out == nullptr) return lab::kBadArgument;
    if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
    const lab::LockdownSetup& setup = call.port().reports.lockdown;
    StoreLockdown(setup.config, out->config_flag, out->config_status);
    StoreLockdown(setup.firmware_update, out->firmware_update_flag, out->firmware_update_status);
    StoreLockdown(setup.mpi, out->mpi_flag, out->mpi_status);
    if (call.adapter().firmware_lockdown) out->firmware_update_flag = 1;
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_ResetDeviceStats(const DeviceHandle* handle) {
  return lab::ServePort("TORPI_ResetDeviceStats", handle, {}, [](Call& call) {
    lab::ResetCounters(call.port());
    return call.KeepPort(false);
  });
}

LibraryStatus TORPI_GetVpd(const DeviceHandle* handle, std::uint32_t zero, std::uint8_t* out,
                           std::uint32_t* size) {
  return lab::ServePort("TORPI_GetVpd", handle, {zero, RoomIn(size)}, [=](Call& call) {
    const lab::VpdSetup& setup = call.port().reports.vpd;
    if (setup.none) return std::uint32_t{lab::kNotForThisAdapter};
    return HandOver(call, lab::ComposeVpd(call.adapter(), setup), out, size);
  });
}

LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle* handle, std::uint8_t* out, std::uint32_t* size) {
  return lab::ServePort("TORPI_DiagnosticsRDPTest", handle, {RoomIn(size)}, [=](Call& call) {
    if (call.entry().interface_type == PortInterfaceType::kNpivVirtual)
      return std::uint32_t{lab::kNotForVirtualPorts};
    if (!IsLinkUp(call.entry())) return std::uint32_t{lab::kTestNeedsLink};
    if (call.port().reports.rdp.no_answer) return std::uint32_t{lab::kTestFailed};
    return HandOver(call, lab::ComposeRdpResponse(call.port()), out, size);
  });
}

LibraryStatus TORPI_SDGetFwDump2(std::uint32_t sd_handle, std::uint32_t zero, void** out_buffer,
                                 std::uint32_t* out_size) {
  return lab::ServePort(
      "TORPI_SDGetFwDump2", sd_handle, {zero},
      [=](Call& call) { return HandOverDump(call, out_buffer, out_size); },
      lab::kOlderInterfaceFailure + lab::kUnknownHandle);
}
