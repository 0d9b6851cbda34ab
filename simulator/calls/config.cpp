// Non-volatile configuration, boot records, credit recovery, error correction and the beacon.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/file.h"
#include "base/text.h"
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"
#include "images/nvram_image.h"

using lab::Call;
using recording::ProtocolRecording;

namespace {

constexpr std::uint8_t kMaxCount = 15;

// The statistics block of the firmware is longer than its known fields.
constexpr std::size_t kStatsBytes = 1024;
static_assert(kStatsBytes >= sizeof(FWPrivateStats));

std::string Hex(const void* record, std::size_t size) {
  constexpr char kDigits[] = "0123456789abcdef";
  const auto* const bytes = static_cast<const unsigned char*>(record);
  std::string digits;
  for (std::size_t i = 0; i < size; ++i) {
    digits += kDigits[bytes[i] >> 4];
    digits += kDigits[bytes[i] & 0x0F];
  }
  return digits;
}

// A call on the configuration of a real port; play(port) plays a recording.
template <typename Action, typename Play = lab::Refuse>
std::uint32_t ServeConfig(const char* name, const DeviceHandle* handle, lab::Arguments arguments,
                          Action action, Play play = {}) {
  return lab::ServeReading(name, handle, arguments, play, [&](Call& call) -> std::uint32_t {
    if (call.IsVirtualPort()) return lab::kNotForVirtualPorts;
    return action(call);
  });
}

template <typename Record>
std::uint32_t HandOut(Call& call, const Record& record, Record* out) {
  if (!out) return lab::kBadArgument;
  *out = record;
  call.Out("record", Hex(out, sizeof *out));
  return lab::kSuccess;
}

// Stores a record of the caller's. The trace shows it as hexadecimal digits.
template <typename Record, typename Check>
std::uint32_t TakeIn(const char* name, const DeviceHandle* handle, const Record* record,
                     Record lab::ConfigSetup::*place, Check check) {
  try {
    const std::string hex = record ? Hex(record, sizeof *record) : "";
    return ServeConfig(name, handle, {record ? hex.c_str() : nullptr}, [=](Call& call) -> std::uint32_t {
      if (!record) return lab::kBadArgument;
      if (const std::uint32_t refusal = check(call)) return refusal;
      call.config().*place = *record;
      return call.KeepPort(true);
    });
  } catch (...) {
    return lab::FailInternally();
  }
}

std::uint32_t Always(Call&) {
  return lab::kSuccess;
}

std::uint32_t NvmeRefusal(Call& call) {
  if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
  return call.config().nvme_present ? lab::kSuccess : lab::kNoBootEntries;
}

// Families since Elm have error correction, those with NVMe credit recovery too.
std::uint32_t FecRefusal(Call& call) {
  const lab::Family& family = *call.adapter().family;
  return family.memo_block ? lab::kSuccess : lab::kNotForThisAdapter;
}

// The outcome of credit recovery on the link: of the host file, or else as the status and the link suggest.
void StoreCreditState(const Call& call, std::uint8_t& state, std::uint8_t& negotiated, std::string& reason) {
  const lab::CreditRecovery& setup = call.config().credit_recovery;
  const bool link_up = call.LinkIsUp();
  const bool online = setup.online.value_or(link_up && setup.status != 0);
  state = online ? 1 : 0;
  negotiated = setup.negotiated.value_or(online ? setup.count : std::uint8_t{0});
  reason = setup.reason.value_or(online ? "" : link_up ? "Feature disabled" : "Link down");
}

// Stores a setting that is 0 or 1.
std::uint32_t StoreSwitch(Call& call, std::uint32_t& place, std::uint32_t value, bool reboot_required) {
  if (value > 1) return lab::kBadArgument;
  place = value;
  return call.KeepPort(reboot_required);
}

std::uint32_t HandOutSwitch(Call& call, const char* name, std::uint32_t value, std::uint32_t* out) {
  if (!out) return lab::kBadArgument;
  *out = value;
  call.Out(name, value);
  return lab::kSuccess;
}

std::uint32_t HandOutStats(Call& call, FWPrivateStats** out, std::uint32_t* out_size) {
  if (!out || !out_size) return lab::kBadArgument;
  void* const block = std::calloc(1, kStatsBytes);
  if (!block) return lab::kInternalFailure;
  const lab::ErrorCorrection& fec = call.config().fec;
  FWPrivateStats stats{};
  stats.correctable_fec_errors = fec.correctable;
  stats.uncorrectable_fec_errors = fec.uncorrectable;
  std::memcpy(block, &stats, sizeof stats);
  *out = static_cast<FWPrivateStats*>(block);
  *out_size = kStatsBytes;
  call.Out("correctable", fec.correctable);
  call.Out("uncorrectable", fec.uncorrectable);
  return lab::kSuccess;
}

std::uint32_t PlayStats(const ProtocolRecording& port, FWPrivateStats** out, std::uint32_t* out_size) {
  if (!out || !out_size) return lab::kBadArgument;
  const recording::StatisticsBlock& recorded = port.firmware_statistics.record;
  if (port.firmware_statistics.Good() && !recorded.is_null) {
    void* const block = std::calloc(1, kStatsBytes);
    if (!block) return lab::kInternalFailure;
    std::memcpy(block, &recorded.block, sizeof recorded.block);
    *out = static_cast<FWPrivateStats*>(block);
  }
  return lab::Play(port.firmware_statistics,
                   [=](const recording::StatisticsBlock& block) { *out_size = block.size; });
}

}  // namespace

LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle* handle, HBAParamsInfo* out,
                                     HBAParamsExtra* out_extra) {
  return ServeConfig(
      "TORPI_GetHBAParamsInfo", handle, {},
      [=](Call& call) -> std::uint32_t {
        if (!out_extra) return lab::kBadArgument;
        *out_extra = {};
        return HandOut(call, call.config().nvram, out);
      },
      [=](const ProtocolRecording& port) -> std::uint32_t {
        if (!out || !out_extra) return lab::kBadArgument;
        return lab::Play(port.hba_params, [=](const recording::HbaParamsAnswer& params) {
          *out = params.info;
          *out_extra = params.extra;
        });
      });
}

LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle* handle, const HBAParamsInfo* record) {
  return TakeIn("TORPI_UpdateHBAParameters", handle, record, &lab::ConfigSetup::nvram, Always);
}

LibraryStatus TORPI_RestoreDefaultNVRAM(const DeviceHandle* handle) {
  return ServeConfig("TORPI_RestoreDefaultNVRAM", handle, {}, [](Call& call) {
    const lab::ConfigSetup defaults = lab::MakeConfig(*call.adapter().family);
    call.config().nvram = defaults.nvram;
    call.config().credit_recovery.status = defaults.credit_recovery.status;
    call.config().credit_recovery.count = defaults.credit_recovery.count;
    return call.KeepPort(true);
  });
}

LibraryStatus TORPI_SaveSingleAdapterNVRAMToFile(const DeviceHandle* handle, const char* file) {
  return ServeConfig("TORPI_SaveSingleAdapterNVRAMToFile", handle, {file}, [=](Call& call) -> std::uint32_t {
    if (!file) return lab::kBadArgument;
    return lab::WriteFile(file, lab::NvramImage(*call.adapter().family, call.config().nvram));
  });
}

LibraryStatus TORPI_UpdateAdapterNVRAMFromFile(const DeviceHandle* handle, const char* file) {
  return ServeConfig("TORPI_UpdateAdapterNVRAMFromFile", handle, {file}, [=](Call& call) -> std::uint32_t {
    if (!file) return lab::kBadArgument;
    if (const std::uint32_t refusal = lab::ReadNvramImage(file, call.adapter(), call.config().nvram)) {
      return refusal;
    }
    return call.KeepPort(true);
  });
}

LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle* handle, std::uint8_t* out_status,
                                          std::uint8_t* out_configured, std::uint8_t* out_state,
                                          std::uint8_t* out_negotiated, char* out_reason,
                                          std::uint32_t reason_size) {
  return ServeConfig(
      "TORPI_FCGetBBCSupportInfoEx", handle, {reason_size},
      [=](Call& call) -> std::uint32_t {
        if (!out_status || !out_configured || !out_state || !out_negotiated || !out_reason)
          return lab::kBadArgument;
        if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
        *out_status = call.config().credit_recovery.status;
        *out_configured = call.config().credit_recovery.count;
        std::string reason;
        StoreCreditState(call, *out_state, *out_negotiated, reason);
        std::strncpy(out_reason, reason.c_str(),
                     reason_size);  // fills the buffer, with or without terminator
        call.Out("status", *out_status);
        call.Out("configured", *out_configured);
        call.Out("state", *out_state);
        call.Out("negotiated", *out_negotiated);
        call.Out("reason", lab::Quoted(reason));
        return lab::kSuccess;
      },
      [=](const ProtocolRecording& port) -> std::uint32_t {
        if (!out_status || !out_configured || !out_state || !out_negotiated || !out_reason)
          return lab::kBadArgument;
        return lab::Play(port.credit_recovery, [=](const recording::CreditRecoveryAnswer& credit) {
          *out_status = credit.status;
          *out_configured = credit.configured;
          *out_state = credit.state;
          *out_negotiated = credit.negotiated;
          std::memcpy(out_reason, credit.reason.bytes,
                      std::min<std::size_t>(reason_size, sizeof credit.reason));
        });
      });
}

LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle* handle, std::uint8_t status,
                                        std::uint8_t configured) {
  return ServeConfig("TORPI_FCSetBBCSupportInfo", handle, {status, configured},
                     [=](Call& call) -> std::uint32_t {
                       if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
                       if (status > 1 || configured > kMaxCount) return lab::kBadArgument;
                       call.config().credit_recovery.status = status;
                       call.config().credit_recovery.count = configured;
                       return call.KeepPort(true);
                     });
}

LibraryStatus TORPI_FCGetFECSupportInfo(const DeviceHandle* handle, std::uint32_t* out_setting) {
  return ServeConfig(
      "TORPI_FCGetFECSupportInfo", handle, {},
      [=](Call& call) -> std::uint32_t {
        if (const std::uint32_t refusal = FecRefusal(call)) return refusal;
        return HandOutSwitch(call, "setting", call.config().fec.setting, out_setting);
      },
      lab::Plays(&ProtocolRecording::error_correction, out_setting));
}

LibraryStatus TORPI_FCSetFECSupportInfo(const DeviceHandle* handle, std::uint32_t setting) {
  return ServeConfig("TORPI_FCSetFECSupportInfo", handle, {setting}, [=](Call& call) -> std::uint32_t {
    if (const std::uint32_t refusal = FecRefusal(call)) return refusal;
    return StoreSwitch(call, call.config().fec.setting, setting, true);
  });
}

LibraryStatus TORPI_GetFWPrivateStats(const DeviceHandle* handle, FWPrivateStats** out,
                                      std::uint32_t* out_size) {
  return ServeConfig(
      "TORPI_GetFWPrivateStats", handle, {},
      [=](Call& call) -> std::uint32_t {
        if (const std::uint32_t refusal = FecRefusal(call)) return refusal;
        return HandOutStats(call, out, out_size);
      },
      [=](const ProtocolRecording& port) { return PlayStats(port, out, out_size); });
}

LibraryStatus TORPI_ResetFECCounters(const DeviceHandle* handle) {
  return ServeConfig("TORPI_ResetFECCounters", handle, {}, [](Call& call) -> std::uint32_t {
    if (const std::uint32_t refusal = FecRefusal(call)) return refusal;
    call.config().fec.correctable = 0;
    call.config().fec.uncorrectable = 0;
    return call.KeepPort(false);
  });
}

LibraryStatus TORPI_IsMezzAdapter(const DeviceHandle* handle, std::uint8_t* out_is_mezz) {
  const auto play = lab::Plays(&ProtocolRecording::mezzanine, out_is_mezz);
  return lab::ServeReading("TORPI_IsMezzAdapter", handle, {}, play, [=](Call& call) {
    if (!out_is_mezz) return lab::kBadArgument;
    *out_is_mezz = call.adapter().mezzanine ? 1 : 0;
    call.Out("mezzanine", *out_is_mezz);
    return lab::kSuccess;
  });
}

std::uint32_t TORPI_GetBfsConfigMode() {
  return lab::ServeHost("TORPI_GetBfsConfigMode", {}, [](Call&) {
    if (const lab::RecordedHost* const recorded = lab::Lab::Get().Recorded()) {
      return recorded->Recording().boot_mode.record;
    }
    return lab::Lab::Get().GetHost().boot_mode;
  });
}

LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode) {
  return lab::ServeHost("TORPI_SetBfsConfigMode", {mode}, [=](Call&) -> std::uint32_t {
    if (mode != lab::kBootModeBios && mode != lab::kBootModeUefi && mode != lab::kBootModeNvme) {
      return lab::kBadArgument;
    }
    if (lab::Lab::Get().Recorded()) return lab::kRecordedHost;
    lab::Lab::Get().GetHost().boot_mode = mode;
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle* handle, HBAParamsInfo* out, std::uint32_t zero) {
  return ServeConfig(
      "TORPI_GetBootDeviceInfo", handle, {zero},
      [=](Call& call) { return HandOut(call, call.config().nvram, out); },
      lab::Plays(&ProtocolRecording::boot, out));
}

LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle* handle, const HBAParamsInfo* record) {
  return TakeIn("TORPI_SetBootDeviceInfo", handle, record, &lab::ConfigSetup::nvram, Always);
}

LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle* handle, NVMeBootRecord* out) {
  return ServeConfig(
      "TORPI_GetNVMeBootDeviceEntries", handle, {},
      [=](Call& call) -> std::uint32_t {
        if (const std::uint32_t refusal = NvmeRefusal(call)) return refusal;
        return HandOut(call, call.config().nvme, out);
      },
      lab::Plays(&ProtocolRecording::nvme_boot, out));
}

LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle* handle, const NVMeBootRecord* record) {
  return TakeIn("TORPI_SetNVMeBootDeviceEntries", handle, record, &lab::ConfigSetup::nvme, NvmeRefusal);
}

LibraryStatus TORPI_GetAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t* out_state) {
  return ServeConfig(
      "TORPI_GetAdapterBeaconStatus", handle, {},
      [=](Call& call) { return HandOutSwitch(call, "state", call.config().beacon, out_state); },
      lab::Plays(&ProtocolRecording::beacon, out_state));
}

LibraryStatus TORPI_UpdateAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t state) {
  return ServeConfig("TORPI_UpdateAdapterBeaconStatus", handle, {state},
                     [=](Call& call) { return StoreSwitch(call, call.config().beacon, state, false); });
}
