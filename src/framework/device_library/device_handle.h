// How the program names a port to the device library.
#pragma once

#include <cstddef>
#include <cstdint>

// Most calls take the address of this block. Its content is the library's own, except for the number that the
// two calls of the older interface take in place of the address.
struct DeviceHandle {
  std::uint32_t reserved_0;
  std::uint32_t sd_handle;
  std::uint32_t reserved_8;
};
static_assert(offsetof(DeviceHandle, sd_handle) == 4);
static_assert(sizeof(DeviceHandle) == 12);
