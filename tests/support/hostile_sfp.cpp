// The calls on a pluggable module:
//
//   HOSTILE_SFP   bytes, as hexadecimal digits, that the read gives; none are written on a failure
#include "framework/device_library/calls.h"
#include "hostile_library.h"

using hostile::Answer;
using hostile::BufferText;
using hostile::Fill;
using hostile::Format;
using hostile::NameOf;
using hostile::Quoted;

namespace {

constexpr std::size_t kImageBytes = 512;

}  // namespace

extern "C" {

LibraryStatus TORPI_GetSFPDataEx(const DeviceHandle* handle, std::uint8_t* out, std::uint32_t read_mode,
                                 std::uint32_t zero) {
  const LibraryStatus result =
      Answer("TORPI_GetSFPDataEx",
             NameOf(handle) + ", " + BufferText(out, kImageBytes) + Format(", %u, %u", read_mode, zero));
  if (result == 0) Fill("HOSTILE_SFP", out, kImageBytes);
  return result;
}

LibraryStatus TORPI_SaveSFPDataToFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_SaveSFPDataToFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_SaveSFPDataToTextFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_SaveSFPDataToTextFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_SfpModuleFirmwareUpdate(const DeviceHandle* handle, const char* file, std::uint32_t two) {
  return Answer("TORPI_SfpModuleFirmwareUpdate", NameOf(handle) + ", " + Quoted(file) + Format(", %u", two));
}

}  // extern "C"
