// Adapter identifiers: the texts that `list` prints and commands take.
#pragma once

#include <string>

#include "framework/command_run.h"
#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"

// What an adapter identifier stands for. All pointers are set once a look-up has succeeded.
struct AdapterSelection {
  const AdapterEntry* adapter = nullptr;
  const PhyPortEntry* port = nullptr;
  const FCProtocolEntry* fc = nullptr;
};

// The identifier of an adapter: "Adapter_" with its model, an underscore and its serial number.
std::string AdapterIdentifier(const AdapterEntry& adapter);

// Resolves the identifier in word 0, in any case, to the adapter and the Fibre Channel entry of its port with
// the lowest number. Returns kSuccess; kHelpWord for a help word; kInvalidParameter for a missing identifier,
// one of another form, or one that no adapter with a Fibre Channel entry has; kHostNotFound without an
// adapter list.
StatusCode GetPhyPortFromAdapterString(CommandRun& run, AdapterSelection& selection);

// The same, with the failure in the debug log.
StatusCode SelectAdapter(CommandRun& run, AdapterSelection& selection);
