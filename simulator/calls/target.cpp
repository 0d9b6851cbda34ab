// Targets of a port: statistics and link speeds.
#include <algorithm>

#include "base/named_number.h"
#include "base/text.h"
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"

namespace {

using lab::Call;
using lab::TargetState;

bool IsSpeedCode(std::uint32_t code) {
  return std::any_of(std::begin(lab::kSpeedCodes), std::end(lab::kSpeedCodes),
                     [code](const lab::NamedNumber& speed) { return speed.number == code; });
}

std::uint32_t ReadStatistics(Call& call, const TargetStatisticsAddress& address, TargetPortStatistics& out) {
  if (address.kind != kTargetByPortName) return lab::kBadArgument;
  const TargetState* const state = call.targets().Find(address.port_name);
  if (state == nullptr) return lab::kNoSuchTarget;
  out = state->statistics;
  return lab::kSuccess;
}

std::uint32_t SetSpeed(Call& call, std::uint16_t target_number, std::uint32_t speed) {
  if (!IsSpeedCode(speed)) return lab::kBadArgument;
  if (call.adapter().family->fcoe) return lab::kNotForThisAdapter;
  TargetState* const state = call.targets().Find(target_number);
  if (state == nullptr) return lab::kNoSuchTarget;
  state->link_speed = speed;
  state->changed = true;
  return call.KeepPort(false);
}

}  // namespace

LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t sd_handle, std::uint32_t zero,
                                        const TargetStatisticsAddress* address, TargetPortStatistics* out) {
  try {
    const bool named = address != nullptr;
    const std::uint32_t kind = named ? address->kind : 0u;
    const std::string name = named ? lab::OctetText(address->port_name.octets) : "";
    const auto play = [=](const recording::ProtocolRecording&) -> std::uint32_t {
      if (!named || out == nullptr) return lab::kBadArgument;
      const recording::TargetRecording* const target =
          lab::Lab::Get().Recorded()->FindTarget(sd_handle, address->port_name);
      if (target == nullptr || address->kind != kTargetByPortName) return lab::kNotRecorded;
      return lab::Play(target->statistics,
                       [=](const TargetPortStatistics& statistics) { *out = statistics; });
    };
    return lab::ServeReading("TORPI_GetPortStatisticsFC", sd_handle,
                             {zero, kind, named ? name.c_str() : nullptr}, play,
                             [=](Call& call) -> std::uint32_t {
                               if (!named || out == nullptr) return lab::kBadArgument;
                               return ReadStatistics(call, *address, *out);
                             });
  } catch (...) {
    return lab::FailInternally();
  }
}

LibraryStatus TORPI_GetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t* out_speed) {
  const auto play = [=](const recording::ProtocolRecording& port) -> std::uint32_t {
    if (out_speed == nullptr) return lab::kBadArgument;
    const recording::TargetRecording* const target = lab::FindTarget(port, target_number);
    if (target == nullptr) return lab::kNotRecorded;
    return lab::Play(target->link_speed, [=](std::uint32_t speed) { *out_speed = speed; });
  };
  return lab::ServeReading("TORPI_GetTargetLinkSpeed", handle, {target_number}, play, [=](Call& call) {
    if (out_speed == nullptr) return lab::kBadArgument;
    const TargetState* const state = call.targets().Find(target_number);
    if (state == nullptr) return lab::kNoSuchTarget;
    *out_speed = state->link_speed;
    call.Out("speed", *out_speed);
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_SetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t speed) {
  return lab::ServePort("TORPI_SetTargetLinkSpeed", handle, {target_number, speed},
                        [=](Call& call) { return SetSpeed(call, target_number, speed); });
}
