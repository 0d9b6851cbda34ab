// Port reports: temperature, lockdown, statistics, vital product data, link diagnostics, firmware dump.
#include <cstdlib>

#include "base/text.h"
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"
#include "images/rdp_response.h"
#include "images/vpd_image.h"

using lab::Call;
using recording::ProtocolRecording;

namespace {

// Older families have no sensor.
bool HasSensor(const Call& call) {
  return call.adapter().family->personality_call || call.adapter().family->nvme;
}

void StoreLockdown(const lab::Lockdown& lockdown, std::uint8_t& flag, LockdownReadStatus& status) {
  flag = lockdown.on ? 1 : 0;
  status = static_cast<LockdownReadStatus>(lockdown.status);
}

// The caller's buffer size, for the trace.
std::uint32_t RoomIn(const std::uint32_t* size) {
  return size == nullptr ? 0 : *size;
}

// Copies the bytes into a buffer of *size bytes and stores their number in *size. Refuses a buffer that is
// too small.
std::uint32_t HandOver(Call& call, const std::string& bytes, std::uint8_t* out, std::uint32_t* size) {
  if (out == nullptr || size == nullptr || bytes.size() > *size) return lab::kBadArgument;
  bytes.copy(reinterpret_cast<char*>(out), bytes.size());
  *size = static_cast<std::uint32_t>(bytes.size());
  call.Out("size", *size);
  return lab::kSuccess;
}

// A text that says what the dump is of, and bytes that look like memory.
std::string ComposeFirmwareDump(const lab::Adapter& adapter, const lab::Entry& entry) {
  const lab::DumpSetup& setup = entry.reports.dump;
  if (setup.bytes) return *setup.bytes;
  const FCProtocolEntry& record = entry.record;
  std::string dump = "ZNFC firmware dump\n";
  dump.append("model: ").append(adapter.record.model.View()).append("\n");
  dump.append("serial: ").append(adapter.record.serial_number.View()).append("\n");
  dump.append("port: ").append(lab::OctetText(record.port_name.octets)).append("\n");
  dump.append("firmware: ").append(record.running_firmware_version.View()).append("\n\n");
  // A linear congruential generator, so that every dump of a port is the same.
  std::uint32_t word = record.handle.sd_handle;
  while (dump.size() < setup.size) {
    word = word * 1664525 + 1013904223;
    dump += static_cast<char>(word >> 24);
  }
  dump.resize(setup.size);
  return dump;
}

// Failures of the firmware dump that callers know.
constexpr std::uint32_t kNoDumpMemory = 0x20000072;
constexpr std::uint32_t kNoDump = 0x2000007B;

std::uint32_t HandOverDump(Call& call, void** out_buffer, std::uint32_t* out_size) {
  if (out_buffer == nullptr || out_size == nullptr) return lab::kOlderInterfaceFailure + lab::kBadArgument;
  if (call.port().reports.dump.none) return kNoDump;
  const std::string dump = ComposeFirmwareDump(call.adapter(), call.port());
  void* const buffer = std::malloc(dump.size() + 1);  // an empty dump needs an address too
  if (buffer == nullptr) return kNoDumpMemory;
  dump.copy(static_cast<char*>(buffer), dump.size());
  *out_buffer = buffer;
  *out_size = static_cast<std::uint32_t>(dump.size());
  call.Out("size", *out_size);
  return lab::kSuccess;
}

}  // namespace

LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle* handle, BoardTemperature* out) {
  const auto play = lab::Plays(&ProtocolRecording::temperature, out);
  return lab::ServeReading("TORPI_GetAdapterAsicBoardTemperature", handle, {}, play, [=](Call& call) {
    if (out == nullptr) return lab::kBadArgument;
    if (!HasSensor(call)) return lab::kNotForThisAdapter;
    out->celsius = call.port().reports.temperature;
    call.Out("celsius", std::to_string(out->celsius));
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle* handle, LockdownStatus* out) {
  const auto play = lab::Plays(&ProtocolRecording::lockdown, out);
  return lab::ServeReading("TORPI_GetLockdownStatus", handle, {}, play, [=](Call& call) {
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
  const auto play = lab::PlaysSized(&ProtocolRecording::vpd, out, size);
  return lab::ServeReading("TORPI_GetVpd", handle, {zero, RoomIn(size)}, play, [=](Call& call) {
    const lab::VpdSetup& setup = call.port().reports.vpd;
    if (setup.none) return std::uint32_t{lab::kNotForThisAdapter};
    return HandOver(call, lab::ComposeVpd(call.adapter(), setup), out, size);
  });
}

LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle* handle, std::uint8_t* out, std::uint32_t* size) {
  const auto play = lab::PlaysSized(&ProtocolRecording::rdp, out, size);
  return lab::ServeReading("TORPI_DiagnosticsRDPTest", handle, {RoomIn(size)}, play, [=](Call& call) {
    if (call.IsVirtualPort()) return std::uint32_t{lab::kNotForVirtualPorts};
    if (!call.LinkIsUp()) return std::uint32_t{lab::kTestNeedsLink};
    if (call.port().reports.rdp.no_answer) return std::uint32_t{lab::kTestFailed};
    return HandOver(call, lab::ComposeRdpResponse(call.port()), out, size);
  });
}

LibraryStatus TORPI_SDGetFwDump2(std::uint32_t sd_handle, std::uint32_t zero, void** out_buffer,
                                 std::uint32_t* out_size) {
  return lab::ServeReading(
      "TORPI_SDGetFwDump2", sd_handle, {zero},
      [](const ProtocolRecording&) { return kNoDump; },  // a recording never has one
      [=](Call& call) { return HandOverDump(call, out_buffer, out_size); },
      lab::kOlderInterfaceFailure + lab::kUnknownHandle);
}
