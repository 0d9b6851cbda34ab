#include "framework/status.h"

#include "framework/device_library/calls.h"

const char* MessageFor(std::span<const StatusMessage> table, StatusCode code) {
  for (const StatusMessage& row : table) {
    if (row.code == code) return row.text;
  }
  return "Failed, Unknown";
}

StatusCode FromLibrary(LibraryStatus library_status, StatusCode own) {
  return library_status == kLibraryMaintenanceMode ? kMaintenanceMode : own;
}
