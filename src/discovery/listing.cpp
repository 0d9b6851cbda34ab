#include "discovery/listing.h"

#include "framework/device_library/calls.h"

StatusCode OpenListing(CommandRun& run, const AdapterList*& list) {
  if (IsHelpWord(WordAt(run.words, 0))) return kHelpWord;
  list = TORPI_GetAdapterList();
  return list != nullptr ? kSuccess : run.Refuse(kHostNotFound, "List is NULL");
}
