#include "unit/config/config_library.h"

#include "framework/device_library/calls.h"

ConfigLibrary& Config() {
  static ConfigLibrary library;
  return library;
}

extern "C" {

LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle*, HBAParamsInfo* out, HBAParamsExtra*) {
  *out = Config().params;
  return kLibrarySuccess;
}

LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle*, const HBAParamsInfo* record) {
  Config().params = *record;
  return kLibrarySuccess;
}

LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle*, std::uint8_t* out_status,
                                          std::uint8_t* out_configured, std::uint8_t*, std::uint8_t*, char*,
                                          std::uint32_t) {
  *out_status = Config().bbcr_status;
  *out_configured = Config().bbcr_configured;
  return kLibrarySuccess;
}

LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle*, std::uint8_t status, std::uint8_t configured) {
  Config().bbcr_status = status;
  Config().bbcr_configured = configured;
  return kLibrarySuccess;
}

std::uint32_t TORPI_GetBfsConfigMode() {
  return Config().boot_mode;
}

LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode) {
  Config().boot_mode = mode;
  return kLibrarySuccess;
}

LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle*, HBAParamsInfo* out, std::uint32_t) {
  *out = Config().boot;
  return kLibrarySuccess;
}

LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle*, const HBAParamsInfo* record) {
  Config().boot = *record;
  return kLibrarySuccess;
}

LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle*, NVMeBootRecord* out) {
  *out = Config().nvme;
  return kLibrarySuccess;
}

LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle*, const NVMeBootRecord* record) {
  Config().nvme = *record;
  return kLibrarySuccess;
}

}  // extern "C"
