// The personality of an adapter: Fibre Channel or converged.
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"

using lab::Call;
using recording::ProtocolRecording;

std::uint32_t TORPI_CheckOrindaPersonalityChangeOption(const DeviceHandle* handle) {
  return lab::ServeReading(
      "TORPI_CheckOrindaPersonalityChangeOption", handle, {},
      lab::PlaysValue(&ProtocolRecording::personality_change),
      [](Call& call) { return call.adapter().personality_change_allowed ? 1u : 0u; }, 0);
}

LibraryStatus TORPI_GetPersonalityType(const DeviceHandle* handle, std::uint8_t* out_personality) {
  const auto play = lab::Plays(&ProtocolRecording::personality, out_personality);
  return lab::ServeReading("TORPI_GetPersonalityType", handle, {}, play, [=](Call& call) {
    if (!out_personality) return lab::kBadArgument;
    if (!call.adapter().family->personality_call) return lab::kNotForThisAdapter;
    *out_personality = call.adapter().personality;
    call.Out("personality", *out_personality);
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_ChangePersonalityType(const DeviceHandle* handle, std::uint8_t personality) {
  return lab::ServePort("TORPI_ChangePersonalityType", handle, {personality},
                        [=](Call& call) -> std::uint32_t {
                          if (personality > 1) return lab::kBadArgument;
                          if (!call.adapter().personality_change_allowed) return lab::kNotForThisAdapter;
                          call.adapter().personality = personality;
                          return lab::Lab::Get().Keep(call.adapter(), true);
                        });
}
