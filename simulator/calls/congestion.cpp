// Congestion management of a port.
#include <string>

#include "calls/call.h"
#include "calls/lists_out.h"
#include "framework/device_library/calls.h"

using lab::Call;

namespace {

lab::ListsOut<SCMRStatisticsEntry>& StatisticsOut() {
  static lab::ListsOut<SCMRStatisticsEntry> lists("elements");
  return lists;
}

// Serves a call that asks for a capability; action(call) does the work.
template <typename Action>
LibraryStatus ServeCapable(const char* name, const DeviceHandle* handle, std::uint32_t capabilities,
                           lab::Arguments arguments, Action action) {
  return lab::ServePort(name, handle, arguments, [=](Call& call) -> std::uint32_t {
    const bool capable = (call.entry().capabilities & capabilities) != 0;
    return capable ? std::uint32_t{action(call)} : std::uint32_t{lab::kNotSupportedByDriver};
  });
}

std::string Shown(const SCMRProfile& profile) {
  return std::to_string(profile.configuration_status) + ',' +
         std::to_string(static_cast<unsigned>(profile.management)) + ',' + std::to_string(profile.activation);
}

}  // namespace

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle* handle, std::uint8_t* out_enabled) {
  return ServeCapable("TORPI_IsVCLMFeatureEnabled", handle,
                      kFirstCongestionStatistics | kSecondCongestionStatistics, {}, [=](Call& call) {
                        if (out_enabled == nullptr) return lab::kBadArgument;
                        *out_enabled = call.congestion().enabled ? 1 : 0;
                        call.Out("enabled", *out_enabled);
                        return lab::kSuccess;
                      });
}

LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle* handle, SCMRStatisticsEntry** out_head) {
  return ServeCapable("TORPI_GetSCMRStatisticsList", handle, kSecondCongestionStatistics, {},
                      [=](Call& call) {
                        if (out_head == nullptr) return lab::kBadArgument;
                        *out_head = StatisticsOut().HandOut(call, lab::MakeStatisticsList(call.port()));
                        return lab::kSuccess;
                      });
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  return lab::ServeHost("TORPI_FreeSCMRStatisticsList", {},
                        [=](Call& call) { return StatisticsOut().TakeBack(call, head); });
}

LibraryStatus TORPI_SANCongMgmtResetStatistics(const DeviceHandle* handle) {
  return ServeCapable("TORPI_SANCongMgmtResetStatistics", handle, kSecondCongestionStatistics, {},
                      [](Call& call) {
                        lab::ClearStatistics(call.congestion());
                        return call.KeepPort(false);
                      });
}

LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle* handle, SCMRProfile* out) {
  return ServeCapable("TORPI_GetSCMRProfile", handle, kSecondCongestionStatistics, {}, [=](Call& call) {
    if (out == nullptr) return lab::kBadArgument;
    *out = call.congestion().profile;
    call.Out("profile", Shown(*out));
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle* handle, const SCMRProfile* profile) {
  try {
    const std::string shown = profile != nullptr ? Shown(*profile) : "";
    return ServeCapable("TORPI_SetSCMRProfile", handle, kSecondCongestionStatistics,
                        {profile != nullptr ? shown.c_str() : nullptr}, [=](Call& call) -> std::uint32_t {
                          if (profile == nullptr) return lab::kBadArgument;
                          call.congestion().profile = *profile;
                          return call.KeepPort(false);
                        });
  } catch (...) {
    return lab::kInternalFailure;
  }
}
