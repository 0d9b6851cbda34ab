// The calls of the port reports:
//
//   HOSTILE_TEMPERATURE, HOSTILE_LOCKDOWN, HOSTILE_VPD, HOSTILE_RDP
//                     bytes, as hexadecimal digits, that the reads give; none are written on a failure
//                     (the first two may be, see HOSTILE_FILL_FAILED)
//   HOSTILE_VPD_SIZE, HOSTILE_RDP_SIZE, HOSTILE_DUMP_SIZE
//                     what the call says the size is; without it the caller's number stays, and a dump has
//                     its own
//   HOSTILE_DUMP      the firmware dump, as hexadecimal digits. It is handed over on a failure too;
//                     without it the pointer stays as it was
#include <cstdlib>

#include "hostile_library.h"

using hostile::Answer;
using hostile::BufferText;
using hostile::Fill;
using hostile::Format;
using hostile::NameOf;
using hostile::Quoted;
using hostile::ReadRecord;
using hostile::Setting;

namespace {

void GiveSize(const char* setting, std::uint32_t* size) {
  const std::string given = Setting(setting);
  if (!given.empty()) *size = static_cast<std::uint32_t>(std::strtoul(given.c_str(), nullptr, 0));
}

// A read into a buffer: the caller gives its size, and the library then gives that of the content.
LibraryStatus ReadSized(const char* call, const std::string& arguments, const char* setting,
                        const char* size_setting, std::uint8_t* out, std::uint32_t* size) {
  const std::uint32_t room = *size;
  const LibraryStatus result = Answer(call, arguments + ", " + BufferText(out, room) + Format(", %u", room));
  if (result != 0) return result;
  Fill(setting, out, room);
  GiveSize(size_setting, size);
  return result;
}

}  // namespace

extern "C" {

LibraryStatus TORPI_UpdateAdapterNVRAMFromFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_UpdateAdapterNVRAMFromFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle* handle, BoardTemperature* out) {
  return ReadRecord("TORPI_GetAdapterAsicBoardTemperature", "HOSTILE_TEMPERATURE", handle, out, sizeof *out);
}

LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle* handle, LockdownStatus* out) {
  return ReadRecord("TORPI_GetLockdownStatus", "HOSTILE_LOCKDOWN", handle, out, sizeof *out);
}

LibraryStatus TORPI_ResetDeviceStats(const DeviceHandle* handle) {
  return Answer("TORPI_ResetDeviceStats", NameOf(handle));
}

LibraryStatus TORPI_GetVpd(const DeviceHandle* handle, std::uint32_t zero, std::uint8_t* out,
                           std::uint32_t* size) {
  return ReadSized("TORPI_GetVpd", NameOf(handle) + Format(", %u", zero), "HOSTILE_VPD", "HOSTILE_VPD_SIZE",
                   out, size);
}

LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle* handle, std::uint8_t* out, std::uint32_t* size) {
  return ReadSized("TORPI_DiagnosticsRDPTest", NameOf(handle), "HOSTILE_RDP", "HOSTILE_RDP_SIZE", out, size);
}

LibraryStatus TORPI_SDGetFwDump2(std::uint32_t sd_handle, std::uint32_t zero, void** out_buffer,
                                 std::uint32_t* out_size) {
  const LibraryStatus result =
      Answer("TORPI_SDGetFwDump2",
             Format("0x%08x, %u, %s", sd_handle, zero, *out_buffer == nullptr ? "null" : "no null"));
  if (const std::size_t size = Setting("HOSTILE_DUMP").size() / 2; size > 0) {
    *out_buffer = std::malloc(size);
    if (*out_buffer == nullptr) std::abort();
    Fill("HOSTILE_DUMP", *out_buffer, size);
    *out_size = static_cast<std::uint32_t>(size);
  }
  GiveSize("HOSTILE_DUMP_SIZE", out_size);
  return result;
}

}  // extern "C"
