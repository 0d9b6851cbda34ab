// Congestion management of a port.
#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "calls/call.h"
#include "calls/lists_out.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"

using lab::Call;
using recording::ProtocolRecording;

namespace {

lab::ListsOut<SCMRStatisticsEntry>& StatisticsOut() {
  static lab::ListsOut<SCMRStatisticsEntry> lists("elements");
  return lists;
}

// Serves a call that asks for a capability; action(call) does the work, play(port) plays a recording.
template <typename Action, typename Play = lab::Refuse>
LibraryStatus ServeCapable(const char* name, const DeviceHandle* handle, std::uint32_t capabilities,
                           lab::Arguments arguments, Action action, Play play = {}) {
  return lab::ServeReading(name, handle, arguments, play, [=](Call& call) -> std::uint32_t {
    const bool capable = (call.entry().capabilities & capabilities) != 0;
    return capable ? std::uint32_t{action(call)} : std::uint32_t{lab::kNotSupportedByDriver};
  });
}

// A recorded list while a caller has it, and the result of handing it back.
struct RecordedList {
  std::vector<SCMRStatisticsEntry> elements;
  LibraryStatus free_result;
};

std::list<RecordedList>& RecordedListsOut() {
  static std::list<RecordedList> lists;
  return lists;
}

std::uint32_t PlayStatistics(const ProtocolRecording& port, SCMRStatisticsEntry** out_head) {
  if (out_head == nullptr) return lab::kBadArgument;
  return lab::Play(port.congestion_statistics, [=](const recording::StatisticsList& list) {
    if (list.elements.empty()) return;
    RecordedListsOut().push_back({list.elements, list.free_result});
    std::vector<SCMRStatisticsEntry>& elements = RecordedListsOut().back().elements;
    for (std::size_t i = 1; i < elements.size(); ++i) elements[i - 1].next = &elements[i];
    *out_head = elements.data();
  });
}

std::uint32_t FreeRecordedStatistics(const SCMRStatisticsEntry* head) {
  std::list<RecordedList>& lists = RecordedListsOut();
  const auto held = std::find_if(lists.begin(), lists.end(),
                                 [=](const RecordedList& list) { return list.elements.data() == head; });
  if (held == lists.end()) return lab::kBadArgument;
  const std::uint32_t result = held->free_result;
  lists.erase(held);
  return result;
}

std::string Shown(const SCMRProfile& profile) {
  return std::to_string(profile.configuration_status) + ',' +
         std::to_string(static_cast<unsigned>(profile.management)) + ',' + std::to_string(profile.activation);
}

}  // namespace

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle* handle, std::uint8_t* out_enabled) {
  return ServeCapable(
      "TORPI_IsVCLMFeatureEnabled", handle, kFirstCongestionStatistics | kSecondCongestionStatistics, {},
      [=](Call& call) {
        if (out_enabled == nullptr) return lab::kBadArgument;
        *out_enabled = call.congestion().enabled ? 1 : 0;
        call.Out("enabled", *out_enabled);
        return lab::kSuccess;
      },
      lab::Plays(&ProtocolRecording::congestion_enabled, out_enabled));
}

LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle* handle, SCMRStatisticsEntry** out_head) {
  return ServeCapable(
      "TORPI_GetSCMRStatisticsList", handle, kSecondCongestionStatistics, {},
      [=](Call& call) {
        if (out_head == nullptr) return lab::kBadArgument;
        *out_head = StatisticsOut().HandOut(call, lab::MakeStatisticsList(call.port()));
        return lab::kSuccess;
      },
      [=](const ProtocolRecording& port) { return PlayStatistics(port, out_head); });
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  return lab::ServeHost("TORPI_FreeSCMRStatisticsList", {}, [=](Call& call) {
    if (lab::Lab::Get().Recorded()) return FreeRecordedStatistics(head);
    return std::uint32_t{StatisticsOut().TakeBack(call, head)};
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
  return ServeCapable(
      "TORPI_GetSCMRProfile", handle, kSecondCongestionStatistics, {},
      [=](Call& call) {
        if (out == nullptr) return lab::kBadArgument;
        *out = call.congestion().profile;
        call.Out("profile", Shown(*out));
        return lab::kSuccess;
      },
      lab::Plays(&ProtocolRecording::congestion_profile, out));
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
    return lab::FailInternally();
  }
}
