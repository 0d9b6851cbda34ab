#include "framework/status.h"

#include "framework/device_library/library_answers.h"
#include "framework/table.h"

const char* MessageFor(const Table<StatusMessage>& table, StatusCode code) {
  for (const StatusMessage& row : table) {
    if (row.code == code) return row.text;
  }
  return "Failed, Unknown";
}

StatusCode FromLibrary(LibraryStatus library_status, StatusCode own) {
  return library_status == kLibraryMaintenanceMode ? kMaintenanceMode : own;
}

StatusCode FromLibrary(LibraryStatus library_status, std::span<const LibraryAnswer> table, StatusCode own) {
  for (const LibraryAnswer& row : table) {
    if (row.library_status == library_status) return row.status;
  }
  return FromLibrary(library_status, own);
}
