// Targets of a port. The simulation has no behaviour for these calls yet.
#include "call.h"
#include "framework/device_library/calls.h"

LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t sd_handle, std::uint32_t zero,
                                        const TargetStatisticsAddress*, TargetPortStatistics*) {
  return lab::ServePort("TORPI_GetPortStatisticsFC", sd_handle, {zero},
                        [](lab::Call&) { return lab::kNotServed; });
}

LibraryStatus TORPI_GetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t*) {
  return lab::NotServed("TORPI_GetTargetLinkSpeed", handle, {target_number});
}

LibraryStatus TORPI_SetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t speed) {
  return lab::NotServed("TORPI_SetTargetLinkSpeed", handle, {target_number, speed});
}
