// What the `list` commands begin with.
#pragma once

#include "framework/command_run.h"
#include "framework/device_library/adapter_records.h"
#include "framework/status.h"

// Stores the library's adapter list. Fails with kHelpWord for a help word in word 0, and with kHostNotFound
// without an adapter list; both end a `list` in silence, without a document.
StatusCode OpenListing(CommandRun& run, const AdapterList*& list);
