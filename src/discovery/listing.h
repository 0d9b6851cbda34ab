// What the `list` commands begin with.
#pragma once

#include "framework/device_library/adapter_records.h"
#include "framework/status.h"
#include "framework/words.h"

// Stores the library's adapter list. Fails with kHelpWord for a help word in word 0, and with kHostNotFound
// without an adapter list; both deliberately end a `list` in silence, without a document. `class_name` words
// the log line.
StatusCode OpenListing(const char* class_name, const Words& words, const AdapterList*& list);
