// A device library that has only the calls of a session's start and end and the adapter list. It stands for a
// library of another release: the commands that need no more must work with it.
#include "framework/device_library/calls.h"

namespace {

constexpr AdapterEntry kAdapter = [] {
  AdapterEntry entry{};
  entry.serial_number = {"SP00001"};
  entry.model = {"ZX100"};
  return entry;
}();
constexpr AdapterList kList{1, {}, &kAdapter};

}  // namespace

extern "C" {

LibraryStatus TORPI_Initialize(std::uint32_t, std::uint32_t) {
  return 0;
}
LibraryStatus TORPI_SetToolID(std::uint32_t) {
  return 0;
}
LibraryStatus TORPI_SetToolVersion(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {
  return 0;
}
LibraryStatus TORPI_Uninitialize() {
  return 0;
}
const AdapterList* TORPI_GetAdapterList() {
  return &kList;
}

}  // extern "C"
