// The SFP module: reading, saving and updating it. The simulation has no behaviour for these calls yet.
#include "call.h"
#include "framework/device_library/calls.h"

LibraryStatus TORPI_GetSFPDataEx(const DeviceHandle* handle, std::uint8_t*, std::uint32_t read_mode,
                                 std::uint32_t zero) {
  return lab::NotServed("TORPI_GetSFPDataEx", handle, {read_mode, zero});
}

LibraryStatus TORPI_SaveSFPDataToFile(const DeviceHandle* handle, const char* file) {
  return lab::NotServed("TORPI_SaveSFPDataToFile", handle, {file});
}

LibraryStatus TORPI_SaveSFPDataToTextFile(const DeviceHandle* handle, const char* file) {
  return lab::NotServed("TORPI_SaveSFPDataToTextFile", handle, {file});
}

LibraryStatus TORPI_SfpModuleFirmwareUpdate(const DeviceHandle* handle, const char* file, std::uint32_t two) {
  return lab::NotServed("TORPI_SfpModuleFirmwareUpdate", handle, {file, two});
}
