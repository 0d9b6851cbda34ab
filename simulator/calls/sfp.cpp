// The pluggable module of a port: reading its memory, saving it in a file, and writing its firmware.
#include <cstring>

#include "base/file.h"
#include "base/text.h"
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"
#include "images/sfp_files.h"

using lab::Call;
using lab::SfpModule;

namespace {

// Which memory a caller wants: as the port last read it, read anew and kept by the port, or read anew for
// this call alone.
enum ReadMode : std::uint32_t { kAsKnown = 0, kRefreshed = 1, kStraight = 3 };

constexpr std::uint32_t kUpdatableKind = 2;

bool IsReadMode(std::uint32_t mode) {
  return mode == kAsKnown || mode == kRefreshed || mode == kStraight;
}

std::uint32_t ReadModule(Call& call, std::uint8_t* out, std::uint32_t mode) {
  if (out == nullptr || !IsReadMode(mode)) return lab::kBadArgument;
  SfpModule* const module = call.sfp();
  if (module == nullptr) {
    std::memset(out, 0, sizeof(lab::SfpMemory));
    return lab::kSuccess;
  }
  const lab::SfpMemory& memory = mode == kAsKnown ? module->known : module->now;
  std::memcpy(out, memory.data(), memory.size());
  call.Out("part", lab::Quoted(lab::SfpPart(memory)));
  if (mode != kRefreshed || module->known == module->now) return lab::kSuccess;
  module->known = module->now;
  module->refreshed = true;
  return call.KeepPort(false);
}

std::uint32_t SaveModule(const Call& call, const char* file,
                         std::string (*content)(const lab::SfpMemory& memory)) {
  if (file == nullptr) return lab::kBadArgument;
  if (call.IsVirtualPort()) return lab::kNoSavingForVirtualPort;
  const SfpModule* const module = call.sfp();
  return module == nullptr ? std::uint32_t{lab::kNoModule} : lab::WriteFile(file, content(module->now));
}

std::uint32_t UpdateModule(const Call& call, const char* file, std::uint32_t kind) {
  if (file == nullptr || kind != kUpdatableKind) return lab::kBadArgument;
  const FCProtocolEntry& entry = call.entry();
  if ((call.adapter().family->driver_flags & kSfpFirmwareUpdate) == 0 || call.IsVirtualPort()) {
    return lab::kNoModuleUpdate;
  }
  if ((entry.driver_flags & kSfpFirmwareUpdate) == 0) return lab::kNotSupportedByDriver;
  SfpModule* const module = call.sfp();
  if (module == nullptr) return lab::kNoModule;
  if (const std::uint32_t refusal = lab::UpdateSfpFirmware(file, *module)) return refusal;
  return call.KeepPort(false);
}

}  // namespace

LibraryStatus TORPI_GetSFPDataEx(const DeviceHandle* handle, std::uint8_t* out, std::uint32_t read_mode,
                                 std::uint32_t zero) {
  const auto play = [=](const recording::ProtocolRecording& port) -> std::uint32_t {
    if (out == nullptr || !IsReadMode(read_mode)) return lab::kBadArgument;
    // The file has what the module itself answers once: reading it anew gives nothing newer.
    return lab::Play(
        read_mode == kAsKnown ? port.sfp : port.sfp_straight,
        [=](const recording::SfpImage& image) { std::memcpy(out, image.bytes, sizeof image.bytes); });
  };
  return lab::ServeReading("TORPI_GetSFPDataEx", handle, {read_mode, zero}, play,
                           [=](Call& call) { return ReadModule(call, out, read_mode); });
}

LibraryStatus TORPI_SaveSFPDataToFile(const DeviceHandle* handle, const char* file) {
  return lab::ServePort("TORPI_SaveSFPDataToFile", handle, {file}, [=](Call& call) {
    return SaveModule(call, file, [](const lab::SfpMemory& memory) {
      return std::string(reinterpret_cast<const char*>(memory.data()), memory.size());
    });
  });
}

LibraryStatus TORPI_SaveSFPDataToTextFile(const DeviceHandle* handle, const char* file) {
  return lab::ServePort("TORPI_SaveSFPDataToTextFile", handle, {file},
                        [=](Call& call) { return SaveModule(call, file, &lab::SfpMemoryText); });
}

LibraryStatus TORPI_SfpModuleFirmwareUpdate(const DeviceHandle* handle, const char* file, std::uint32_t two) {
  return lab::ServePort("TORPI_SfpModuleFirmwareUpdate", handle, {file, two},
                        [=](Call& call) { return UpdateModule(call, file, two); });
}
