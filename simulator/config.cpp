// Non-volatile configuration, boot records and the beacon. The simulation has no behaviour for these calls
// yet.
#include "call.h"
#include "framework/device_library/calls.h"

LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle* handle, HBAParamsInfo*, HBAParamsExtra*) {
  return lab::NotServed("TORPI_GetHBAParamsInfo", handle);
}

LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle* handle, const HBAParamsInfo*) {
  return lab::NotServed("TORPI_UpdateHBAParameters", handle);
}

LibraryStatus TORPI_RestoreDefaultNVRAM(const DeviceHandle* handle) {
  return lab::NotServed("TORPI_RestoreDefaultNVRAM", handle);
}

LibraryStatus TORPI_SaveSingleAdapterNVRAMToFile(const DeviceHandle* handle, const char* file) {
  return lab::NotServed("TORPI_SaveSingleAdapterNVRAMToFile", handle, {file});
}

LibraryStatus TORPI_UpdateAdapterNVRAMFromFile(const DeviceHandle* handle, const char* file) {
  return lab::NotServed("TORPI_UpdateAdapterNVRAMFromFile", handle, {file});
}

LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle* handle, std::uint8_t*, std::uint8_t*,
                                          std::uint8_t*, std::uint8_t*, char*, std::uint32_t reason_size) {
  return lab::NotServed("TORPI_FCGetBBCSupportInfoEx", handle, {reason_size});
}

LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle* handle, std::uint8_t status,
                                        std::uint8_t configured) {
  return lab::NotServed("TORPI_FCSetBBCSupportInfo", handle, {status, configured});
}

LibraryStatus TORPI_FCGetFECSupportInfo(const DeviceHandle* handle, std::uint32_t*) {
  return lab::NotServed("TORPI_FCGetFECSupportInfo", handle);
}

LibraryStatus TORPI_FCSetFECSupportInfo(const DeviceHandle* handle, std::uint32_t setting) {
  return lab::NotServed("TORPI_FCSetFECSupportInfo", handle, {setting});
}

LibraryStatus TORPI_GetFWPrivateStats(const DeviceHandle* handle, FWPrivateStats**, std::uint32_t*) {
  return lab::NotServed("TORPI_GetFWPrivateStats", handle);
}

LibraryStatus TORPI_ResetFECCounters(const DeviceHandle* handle) {
  return lab::NotServed("TORPI_ResetFECCounters", handle);
}

LibraryStatus TORPI_IsMezzAdapter(const DeviceHandle* handle, std::uint8_t*) {
  return lab::NotServed("TORPI_IsMezzAdapter", handle);
}

std::uint32_t TORPI_GetBfsConfigMode() {
  return lab::ServeHost("TORPI_GetBfsConfigMode", {}, [](lab::Call&) { return lab::kSuccess; });
}

LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode) {
  return lab::ServeHost("TORPI_SetBfsConfigMode", {mode}, [](lab::Call&) { return lab::kNotServed; });
}

LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle* handle, HBAParamsInfo*, std::uint32_t zero) {
  return lab::NotServed("TORPI_GetBootDeviceInfo", handle, {zero});
}

LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle* handle, const HBAParamsInfo*) {
  return lab::NotServed("TORPI_SetBootDeviceInfo", handle);
}

LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle* handle, NVMeBootRecord*) {
  return lab::NotServed("TORPI_GetNVMeBootDeviceEntries", handle);
}

LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle* handle, const NVMeBootRecord*) {
  return lab::NotServed("TORPI_SetNVMeBootDeviceEntries", handle);
}

LibraryStatus TORPI_GetAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t*) {
  return lab::NotServed("TORPI_GetAdapterBeaconStatus", handle);
}

LibraryStatus TORPI_UpdateAdapterBeaconStatus(const DeviceHandle* handle, std::uint32_t state) {
  return lab::NotServed("TORPI_UpdateAdapterBeaconStatus", handle, {state});
}
