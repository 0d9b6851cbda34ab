// Congestion management. The simulation has no behaviour for these calls yet.
#include "call.h"
#include "framework/device_library/calls.h"

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle* handle, std::uint8_t*) {
  return lab::NotServed("TORPI_IsVCLMFeatureEnabled", handle);
}

LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle* handle, SCMRStatisticsEntry**) {
  return lab::NotServed("TORPI_GetSCMRStatisticsList", handle);
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry*) {
  return lab::ServeHost("TORPI_FreeSCMRStatisticsList", {}, [](lab::Call&) { return lab::kNotServed; });
}

LibraryStatus TORPI_SANCongMgmtResetStatistics(const DeviceHandle* handle) {
  return lab::NotServed("TORPI_SANCongMgmtResetStatistics", handle);
}

LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle* handle, SCMRProfile*) {
  return lab::NotServed("TORPI_GetSCMRProfile", handle);
}

LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle* handle, const SCMRProfile*) {
  return lab::NotServed("TORPI_SetSCMRProfile", handle);
}
