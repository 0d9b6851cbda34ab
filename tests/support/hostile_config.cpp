// The calls of a port's configuration. What is written is in the trace, whole records as hexadecimal
// digits, and is what later reads of the run give.
//
//   HOSTILE_PARAMS, HOSTILE_BOOT, HOSTILE_NVME
//                     the records at the start, as hexadecimal digits
//   HOSTILE_PARAMS_AFTER, HOSTILE_BOOT_AFTER, HOSTILE_NVME_AFTER
//                     what reads give after a write of that record, in place of what was written
//   HOSTILE_BBCR      status, configured, state, negotiated and the reason's bytes, in the same manner
//   HOSTILE_FEC, HOSTILE_BEACON
//                     the numbers in force at the start
//   HOSTILE_FW_STATS  the firmware's statistics block, as hexadecimal digits; "null" for a success without
//                     a block
//
// A read that fails leaves noise in its buffer.
#include <cstdlib>
#include <cstring>
#include <map>

#include "hostile_library.h"

using hostile::Answer;
using hostile::BufferText;
using hostile::Fill;
using hostile::Format;
using hostile::Hex;
using hostile::NameOf;
using hostile::Quoted;
using hostile::Setting;

namespace {

constexpr unsigned char kNoise = 0xA5;

// A record that the device keeps: that of its setting, or the one written last.
template <typename Record>
Record& Kept(const char* setting) {
  static Record record = [setting] {
    Record first = {};
    Fill(setting, &first, sizeof first);
    return first;
  }();
  return record;
}

std::uint32_t NumberSetting(const char* setting) {
  return static_cast<std::uint32_t>(std::strtoul(Setting(setting).c_str(), nullptr, 0));
}

template <typename Record>
LibraryStatus Read(const char* call, const char* setting, const DeviceHandle* handle, Record* out,
                   const std::string& more = "") {
  const std::string arguments = NameOf(handle) + ", " + BufferText(out, sizeof *out) + more;
  const LibraryStatus result = Answer(call, arguments);
  if (result == 0) {
    *out = Kept<Record>(setting);
  } else {
    std::memset(static_cast<void*>(out), kNoise, sizeof *out);
  }
  return result;
}

template <typename Record>
LibraryStatus Write(const char* call, const char* setting, const DeviceHandle* handle, const Record* record) {
  const LibraryStatus result = Answer(call, NameOf(handle) + ", " + Hex(record, sizeof *record));
  if (result != 0) return result;
  Kept<Record>(setting) = *record;
  const std::string after = std::string(setting) + "_AFTER";
  if (!Setting(after).empty()) Fill(after.c_str(), &Kept<Record>(setting), sizeof *record);
  return result;
}

// The parameters and the boot configuration have the same layout, but are two records.
struct BootRecord {
  HBAParamsInfo info;
};

struct BbcrRecord {
  std::uint8_t status, configured, state, negotiated;
  char reason[64];
};

// A number that the device keeps.
std::uint32_t& Number(const char* setting) {
  static std::map<std::string, std::uint32_t> numbers;
  return numbers.emplace(setting, NumberSetting(setting)).first->second;
}

LibraryStatus ReadNumber(const char* call, const char* setting, const DeviceHandle* handle,
                         std::uint32_t* out) {
  const LibraryStatus result = Answer(call, NameOf(handle));
  *out = result == 0 ? Number(setting) : 0xA5A5A5A5;
  return result;
}

LibraryStatus WriteNumber(const char* call, const char* setting, const DeviceHandle* handle,
                          std::uint32_t number) {
  const LibraryStatus result = Answer(call, NameOf(handle) + Format(", %u", number));
  if (result == 0) Number(setting) = number;
  return result;
}

}  // namespace

extern "C" {

LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle* handle, HBAParamsInfo* out,
                                     HBAParamsExtra* out_extra) {
  const std::string extra = ", " + BufferText(out_extra, sizeof *out_extra);
  const LibraryStatus result = Read("TORPI_GetHBAParamsInfo", "HOSTILE_PARAMS", handle, out, extra);
  std::memset(static_cast<void*>(out_extra), kNoise, sizeof *out_extra);
  return result;
}

LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle* handle, const HBAParamsInfo* record) {
  return Write("TORPI_UpdateHBAParameters", "HOSTILE_PARAMS", handle, record);
}

LibraryStatus TORPI_RestoreDefaultNVRAM(const DeviceHandle* handle) {
  return Answer("TORPI_RestoreDefaultNVRAM", NameOf(handle));
}

LibraryStatus TORPI_SaveSingleAdapterNVRAMToFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_SaveSingleAdapterNVRAMToFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle* handle, std::uint8_t* out_status,
                                          std::uint8_t* out_configured, std::uint8_t* out_state,
                                          std::uint8_t* out_negotiated, char* out_reason,
                                          std::uint32_t reason_size) {
  const std::string arguments =
      NameOf(handle) + ", " + BufferText(out_reason, reason_size) + Format(", %u", reason_size);
  const LibraryStatus result = Answer("TORPI_FCGetBBCSupportInfoEx", arguments);
  if (result != 0) return result;
  const BbcrRecord& record = Kept<BbcrRecord>("HOSTILE_BBCR");
  *out_status = record.status;
  *out_configured = record.configured;
  *out_state = record.state;
  *out_negotiated = record.negotiated;
  std::memcpy(out_reason, record.reason,
              reason_size < sizeof record.reason ? reason_size : sizeof record.reason);
  return result;
}

LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle* handle, std::uint8_t status,
                                        std::uint8_t configured) {
  const LibraryStatus result =
      Answer("TORPI_FCSetBBCSupportInfo", NameOf(handle) + Format(", %u, %u", status, configured));
  if (result != 0) return result;
  auto& record = Kept<BbcrRecord>("HOSTILE_BBCR");
  record.status = status;
  record.configured = configured;
  return result;
}

LibraryStatus TORPI_FCGetFECSupportInfo(const DeviceHandle* handle, std::uint32_t* out_setting) {
  return ReadNumber("TORPI_FCGetFECSupportInfo", "HOSTILE_FEC", handle, out_setting);
}

LibraryStatus TORPI_FCSetFECSupportInfo(const DeviceHandle* handle, std::uint32_t setting) {
  return WriteNumber("TORPI_FCSetFECSupportInfo", "HOSTILE_FEC", handle, setting);
}

LibraryStatus TORPI_GetFWPrivateStats(const DeviceHandle* handle, FWPrivateStats** out,
                                      std::uint32_t* out_size) {
  const std::string arguments =
      NameOf(handle) + (*out == nullptr ? ", null" : ", no null") + Format(", %u", *out_size);
  const LibraryStatus result = Answer("TORPI_GetFWPrivateStats", arguments);
  const std::string bytes = Setting("HOSTILE_FW_STATS");
  if (result != 0 || bytes == "null") return result;
  const std::size_t size = bytes.size() / 2;
  void* block = std::malloc(size);
  if (block == nullptr) std::abort();
  Fill("HOSTILE_FW_STATS", block, size);
  *out = static_cast<FWPrivateStats*>(block);
  *out_size = 1;  // nobody is to look at it
  return result;
}

LibraryStatus TORPI_ResetFECCounters(const DeviceHandle* handle) {
  return Answer("TORPI_ResetFECCounters", NameOf(handle));
}

std::uint32_t TORPI_GetBfsConfigMode() {
  return Answer("TORPI_GetBfsConfigMode", "", 1);
}

LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode) {
  return Answer("TORPI_SetBfsConfigMode", Format("%u", mode));
}

LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle* handle, HBAParamsInfo* out, std::uint32_t zero) {
  BootRecord record = {*out};
  const LibraryStatus result =
      Read("TORPI_GetBootDeviceInfo", "HOSTILE_BOOT", handle, &record, Format(", %u", zero));
  *out = record.info;
  return result;
}

LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle* handle, const HBAParamsInfo* info) {
  const BootRecord record = {*info};
  return Write("TORPI_SetBootDeviceInfo", "HOSTILE_BOOT", handle, &record);
}

LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle* handle, NVMeBootRecord* out) {
  return Read("TORPI_GetNVMeBootDeviceEntries", "HOSTILE_NVME", handle, out);
}

LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle* handle, const NVMeBootRecord* record) {
  return Write("TORPI_SetNVMeBootDeviceEntries", "HOSTILE_NVME", handle, record);
}

LibraryStatus TORPI_GetAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t* out_state) {
  return ReadNumber("TORPI_GetAdapterBeaconStatus", "HOSTILE_BEACON", handle, out_state);
}

LibraryStatus TORPI_UpdateAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t state) {
  return WriteNumber("TORPI_UpdateAdapterBeaconStatus", "HOSTILE_BEACON", handle, state);
}

}  // extern "C"
