// The pluggable module of a port: reading its memory, saving it in a file, and writing its firmware.
#include <cstring>

#include "base/text.h"
#include "calls/call.h"
#include "framework/device_library/calls.h"
#include "host_file/host_keys.h"
#include "images/sfp_files.h"

using lab::Call;
using lab::SfpModule;

namespace {

// How a caller wants the memory: as the port has read it, read anew for the port as well, or read anew for
// this call alone.
enum ReadMode : std::uint32_t { kAsKnown = 0, kRefreshed = 1, kStraight = 3 };

constexpr std::uint32_t kUpdatableKind = 2;

std::uint32_t ReadModule(Call& call, std::uint8_t* out, std::uint32_t mode) {
  if (out == nullptr || (mode != kAsKnown && mode != kRefreshed && mode != kStraight))
    return lab::kBadArgument;
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
  if (call.entry().interface_type == PortInterfaceType::kNpivVirtual) return lab::kNoSavingForVirtualPort;
  const SfpModule* const module = call.sfp();
  return module == nullptr ? std::uint32_t{lab::kNoModule} : lab::WriteFile(file, content(module->now));
}

std::uint32_t UpdateModule(const Call& call, const char* file, std::uint32_t kind) {
  if (file == nullptr || kind != kUpdatableKind) return lab::kBadArgument;
  const FCProtocolEntry& entry = call.entry();
  if ((call.adapter().family->driver_flags & kSfpFirmwareUpdate) == 0 ||
      entry.interface_type == PortInterfaceType::kNpivVirtual) {
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
  return lab::ServePort("TORPI_GetSFPDataEx", handle, {read_mode, zero},
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
