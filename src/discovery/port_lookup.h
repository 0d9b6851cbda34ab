// Port, target and LUN identifiers: the look-ups that every command below the adapter begins with.
#pragma once

#include "framework/command_run.h"
#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"
#include "framework/status.h"

// What a port identifier stands for. All pointers are set once a look-up has succeeded.
struct PortSelection {
  const AdapterEntry* adapter = nullptr;
  const PhyPortEntry* port = nullptr;
  const FCProtocolEntry* fc = nullptr;
};

struct TargetSelection {
  const FCProtocolEntry* fc = nullptr;
  const TargetEntry* target = nullptr;
};

struct LunSelection {
  const FCProtocolEntry* fc = nullptr;
  const TargetEntry* target = nullptr;
  const LunEntry* lun = nullptr;
};

// Each resolves the identifier in word 0, which must be exactly as `list` prints it, to the first entry of
// that name. Returns kSuccess; kHelpWord for a help word; kInvalidParameter for a missing identifier, one of
// another kind, or one that nothing has; kHostNotFound without an adapter list. The library is asked only for
// an identifier of the right kind.
StatusCode GetPhyPortFromPortString(CommandRun& run, PortSelection& selection);
StatusCode GetTargetFromTargetString(CommandRun& run, TargetSelection& selection);
StatusCode GetLunFromLunString(CommandRun& run, LunSelection& selection);

// The same, with the failure in the debug log.
StatusCode SelectPort(CommandRun& run, PortSelection& selection);
StatusCode SelectTarget(CommandRun& run, TargetSelection& selection);
StatusCode SelectLun(CommandRun& run, LunSelection& selection);

// SelectPort for the commands that a virtual port does not have: kVirtualPort for such a port.
StatusCode SelectPhysicalPort(CommandRun& run, PortSelection& selection);

// Refuses a virtual port: kVirtualPort with its line in the log, else kSuccess.
StatusCode CheckPhysical(const CommandRun& run, const FCProtocolEntry& fc);
