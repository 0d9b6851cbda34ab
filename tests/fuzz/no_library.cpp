// What the framework calls of the device library: nothing that a fuzz target needs.
#include "framework/device_library/calls.h"

LibraryStatus TORPI_IsRebootRequired(std::uint8_t*) {
  return kLibrarySuccess;
}
