// Congestion management of a port.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "calls/call.h"
#include "framework/device_library/calls.h"

using lab::Call;

namespace {

// The lists that callers hold.
std::vector<std::unique_ptr<lab::StatisticsList>>& ListsOut() {
  static std::vector<std::unique_ptr<lab::StatisticsList>> lists;
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

std::uint32_t GiveList(Call& call, SCMRStatisticsEntry*& head) {
  auto list = lab::MakeStatisticsList(call.port());
  call.Out("elements", list->size());
  head = list->empty() ? nullptr : list->data();
  if (head != nullptr) ListsOut().push_back(std::move(list));
  return lab::kSuccess;
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
  return ServeCapable(
      "TORPI_GetSCMRStatisticsList", handle, kSecondCongestionStatistics, {}, [=](Call& call) {
        return out_head != nullptr ? GiveList(call, *out_head) : std::uint32_t{lab::kBadArgument};
      });
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  return lab::ServeHost("TORPI_FreeSCMRStatisticsList", {}, [=](Call& call) -> std::uint32_t {
    auto& lists = ListsOut();
    const auto list =
        std::find_if(lists.begin(), lists.end(), [=](const auto& held) { return held->data() == head; });
    if (list == lists.end()) return lab::kBadArgument;
    call.Out("elements", (*list)->size());
    lists.erase(list);
    return lab::kSuccess;
  });
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
                          call.congestion().changed = true;
                          return call.KeepPort(false);
                        });
  } catch (...) {
    return lab::kInternalFailure;
  }
}
