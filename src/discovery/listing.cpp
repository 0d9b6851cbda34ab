#include "discovery/listing.h"

#include "framework/device_library/calls.h"
#include "runtime/debug_log.h"

StatusCode OpenListing(const char* class_name, const Words& words, const AdapterList*& list) {
  if (IsHelpWord(WordAt(words, 0))) return kHelpWord;
  list = TORPI_GetAdapterList();
  if (list != nullptr) return kSuccess;
  DebugLogLevel(kDebugFailure, "%s::CmdListCommon: List is NULL", class_name);
  return kHostNotFound;
}
