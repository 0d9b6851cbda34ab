// A host of one port for the fuzz targets of the configuration, and the library calls that reading it takes.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "config/bbcr.h"
#include "config/boot/boot_config.h"
#include "config/boot/boot_config_ext.h"
#include "config/hba_params/hba_params.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/target_records.h"
#include "memory_files.h"
#include "support/unit_command_run.h"

inline constexpr const char* kPort = "FC_21:00:00:11:22:33:44:55";
inline constexpr std::uint8_t kNoise = 0xA5;

inline void Require(bool condition) {
  if (!condition) std::abort();
}

// A port that sees an FCP target with the LUNs 0 and 3 and an NVMe target with the namespace 1.
struct ConfigHost {
  LunEntry luns[3] = {};
  TargetEntry targets[2] = {};
  FCProtocolEntry fc = {};
  ProtocolList protocols = {};
  PhyPortEntry port = {};
  PortList ports = {};
  AdapterEntry adapter = {};
  AdapterList list = {};

  ConfigHost() {
    fc.port_name = {0x21, 0x00, 0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    fc.pci.vendor_id = 0x1C9E;
    fc.rom_flags = 0x0A;
    luns[1].number = 3;
    luns[2].number = 1;
    luns[0].next = &luns[1];
    for (std::uint8_t i = 0; i < 2; ++i) {
      targets[i].port_name = {0x50, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(i + 1)};
      std::strcpy(targets[i].nqn.bytes, "nqn.x");
    }
    targets[0].first_lun = &luns[0];
    targets[0].next = &targets[1];
    targets[1].first_lun = &luns[2];
    targets[1].state_flags[5] = 0x08;
    fc.first_target = &targets[0];
    protocols.first = &fc;
    port.protocols = &protocols;
    ports.first = &port;
    adapter.ports = &ports;
    list.first = &adapter;
  }
};

inline ConfigHost g_host;

// A file in memory.
class ScratchFile {
 public:
  static const char* Path() { return "/in-memory/staged"; }

  static void Write(std::string_view content) { MemoryFiles::Get().Make(Path())->assign(content); }

  static const std::string& Read() {
    const MemoryFiles::Content content = MemoryFiles::Get().Find(Path());
    Require(content != nullptr);
    return *content;
  }
};

// At the end of a run: nothing is open, and there is no file beside the staged one.
inline void RequireFilesInOrder() {
  Require(MemoryFiles::Get().OpenFiles() == 0);
  Require(MemoryFiles::Get().Count() == 1);
}

const AdapterList* TORPI_GetAdapterList() {
  return &g_host.list;
}

// Every read gives noise.
LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle*, HBAParamsInfo* out, HBAParamsExtra*) {
  std::memset(static_cast<void*>(out), kNoise, sizeof *out);
  return kLibrarySuccess;
}
LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle*, HBAParamsInfo* out, std::uint32_t) {
  std::memset(static_cast<void*>(out), kNoise, sizeof *out);
  return kLibrarySuccess;
}
LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle*, NVMeBootRecord* out) {
  std::memset(static_cast<void*>(out), kNoise, sizeof *out);
  return kLibrarySuccess;
}
LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle*, std::uint8_t* out_status,
                                          std::uint8_t* out_configured, std::uint8_t*, std::uint8_t*, char*,
                                          std::uint32_t) {
  *out_status = *out_configured = kNoise;
  return kLibrarySuccess;
}

LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle*, const HBAParamsInfo*) {
  return kLibrarySuccess;
}
LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle*, std::uint8_t, std::uint8_t) {
  return kLibrarySuccess;
}
std::uint32_t TORPI_GetBfsConfigMode() {
  return 1;
}
LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t) {
  return kLibrarySuccess;
}
LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle*, const HBAParamsInfo*) {
  return kLibrarySuccess;
}
LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle*, const NVMeBootRecord*) {
  return kLibrarySuccess;
}
