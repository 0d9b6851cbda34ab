// Start and end of the library, the adapter list and the reboot flag.
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"

namespace {

// The calls at the start and the end of a run don't load the host, so that a run without need of it does not
// pay for it.
template <typename Action>
LibraryStatus ServeSession(const char* name, lab::Arguments arguments, Action action) {
  try {
    lab::Call call(name, arguments);
    const std::uint32_t result = call.Answer(lab::kSuccess, [&] {
      action(lab::Lab::Get());
      return std::uint32_t{lab::kSuccess};
    });
    call.Finish(std::to_string(result));
    return result;
  } catch (...) {
    return lab::FailInternally();
  }
}

}  // namespace

LibraryStatus TORPI_Initialize(std::uint32_t debug_level, std::uint32_t zero) {
  return ServeSession("TORPI_Initialize", {debug_level, zero}, [](lab::Lab&) {});
}

LibraryStatus TORPI_SetToolID(std::uint32_t tool) {
  return ServeSession("TORPI_SetToolID", {tool}, [tool](lab::Lab& lab) { lab.SetToolId(tool); });
}

LibraryStatus TORPI_SetToolVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t zero_1,
                                   std::uint32_t zero_2) {
  return ServeSession("TORPI_SetToolVersion", {major, minor, zero_1, zero_2}, [=](lab::Lab& lab) {
    lab.SetToolVersion({static_cast<std::uint8_t>(major), static_cast<std::uint8_t>(minor),
                        static_cast<std::uint8_t>(zero_1), static_cast<std::uint8_t>(zero_2)});
  });
}

LibraryStatus TORPI_Uninitialize() {
  const LibraryStatus result = ServeSession("TORPI_Uninitialize", {}, [](lab::Lab&) {});
  if (result == lab::kSuccess) lab::Lab::Reset();
  return result;
}

const AdapterList* TORPI_GetAdapterList() {
  try {
    lab::Host& host = lab::Lab::Get().GetHost();
    const lab::RecordedHost* const recorded = lab::Lab::Get().Recorded();
    const AdapterList* const list = recorded ? recorded->List() : host.no_list ? nullptr : &host.list;
    lab::Call call("TORPI_GetAdapterList", {});
    // 1 for a list and 0 for null: the fault "null" of a pointer call is 0.
    const bool given = call.Answer(0, [&] { return std::uint32_t{list ? 1u : 0u}; }) != 0;
    if (given) lab::Lab::Get().NoteSimulation();
    if (given) call.Out("adapters", recorded ? recorded->Recording().adapters.size() : host.adapters.size());
    call.Finish(given ? "list" : "null");
    return given ? list : nullptr;
  } catch (...) {
    lab::FailInternally();
    return nullptr;
  }
}

LibraryStatus TORPI_IsRebootRequired(std::uint8_t* out_required) {
  return lab::ServeHost("TORPI_IsRebootRequired", {}, [=](lab::Call& call) {
    if (!out_required) return std::uint32_t{lab::kBadArgument};
    if (const lab::RecordedHost* const recorded = lab::Lab::Get().Recorded()) {
      return lab::Play(recorded->Recording().reboot_required,
                       [=](std::uint8_t required) { *out_required = required; });
    }
    *out_required = lab::Lab::Get().GetHost().reboot_required ? 1 : 0;
    call.Out("required", *out_required);
    return std::uint32_t{lab::kSuccess};
  });
}
