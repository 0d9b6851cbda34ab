// Port reports: temperature, lockdown, statistics, vital product data, link diagnostics, firmware dump. The
// simulation has no behaviour for these calls yet.
#include "call.h"
#include "framework/device_library/calls.h"

LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle* handle, BoardTemperature*) {
  return lab::NotServed("TORPI_GetAdapterAsicBoardTemperature", handle);
}

LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle* handle, LockdownStatus*) {
  return lab::NotServed("TORPI_GetLockdownStatus", handle);
}

LibraryStatus TORPI_ResetDeviceStats(const DeviceHandle* handle) {
  return lab::NotServed("TORPI_ResetDeviceStats", handle);
}

LibraryStatus TORPI_GetVpd(const DeviceHandle* handle, std::uint32_t zero, std::uint8_t*, std::uint32_t*) {
  return lab::NotServed("TORPI_GetVpd", handle, {zero});
}

LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle* handle, std::uint8_t*, std::uint32_t*) {
  return lab::NotServed("TORPI_DiagnosticsRDPTest", handle);
}

LibraryStatus TORPI_SDGetFwDump2(std::uint32_t sd_handle, std::uint32_t zero, void**, std::uint32_t*) {
  return lab::ServePort(
      "TORPI_SDGetFwDump2", sd_handle, {zero},
      [](lab::Call&) { return lab::kOlderInterfaceFailure + lab::kNotServed; },
      lab::kOlderInterfaceFailure + lab::kUnknownHandle);
}
