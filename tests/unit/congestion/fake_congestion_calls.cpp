#include "unit/congestion/fake_congestion_calls.h"

FakeCongestion& Congestion() {
  static FakeCongestion congestion;
  return congestion;
}

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle*, std::uint8_t* out_enabled) {
  Congestion().calls.push_back("enabled, preset to " + std::to_string(*out_enabled));
  *out_enabled = Congestion().enabled;
  return Congestion().enabled_result;
}

LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle*, SCMRStatisticsEntry** out_head) {
  *out_head = Congestion().list;
  return Congestion().list_result;
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  Congestion().freed.push_back(head);
  return Congestion().free_result;
}

LibraryStatus TORPI_SANCongMgmtResetStatistics(const DeviceHandle*) {
  return 0;
}

LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle*, SCMRProfile* out) {
  *out = Congestion().profile;
  return 0;
}

LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle*, const SCMRProfile* profile) {
  Congestion().profile = *profile;
  return 0;
}

LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t, std::uint32_t, const TargetStatisticsAddress*,
                                        TargetPortStatistics*) {
  return 0;
}
