#include "support/unit_fake_library.h"

#include <cstdio>

#include "framework/device_library/calls.h"

namespace {

std::string Number(std::uint32_t number) {
  return std::to_string(number);
}

void Called(const std::string& call) {
  Library().calls.push_back(call);
  std::fputs(Library().chatter.c_str(), stdout);
}

}  // namespace

FakeLibrary& Library() {
  static FakeLibrary library;
  return library;
}

void ResetLibrary() {
  Library() = {};
}

extern "C" {

LibraryStatus TORPI_Initialize(std::uint32_t debug_level, std::uint32_t zero) {
  Called("Initialize " + Number(debug_level) + " " + Number(zero));
  return Library().start_result;
}

LibraryStatus TORPI_SetToolID(std::uint32_t tool) {
  Called("SetToolID " + Number(tool));
  return Library().start_result;
}

LibraryStatus TORPI_SetToolVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t zero_1,
                                   std::uint32_t zero_2) {
  Called("SetToolVersion " + Number(major) + " " + Number(minor) + " " + Number(zero_1) + " " +
         Number(zero_2));
  return Library().start_result;
}

LibraryStatus TORPI_Uninitialize() {
  Called("Uninitialize");
  return Library().start_result;
}

const AdapterList* TORPI_GetAdapterList() {
  Called("GetAdapterList");
  return Library().adapters;
}

LibraryStatus TORPI_IsRebootRequired(std::uint8_t* out_required) {
  Called("IsRebootRequired");
  if (Library().reboot_flag.has_value()) *out_required = *Library().reboot_flag;
  return Library().reboot_result;
}

LibraryStatus TORPI_IsMezzAdapter(const DeviceHandle* handle, std::uint8_t* out_is_mezz) {
  Called("IsMezzAdapter");
  Library().mezz_handle_asked = handle;
  if (Library().mezz_flag.has_value()) *out_is_mezz = *Library().mezz_flag;
  return Library().mezz_result;
}

}  // extern "C"
