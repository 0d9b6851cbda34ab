// Port, target and LUN identifiers: the look-ups that every command below the adapter begins with.
#pragma once

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"
#include "framework/status.h"
#include "framework/words.h"

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

// Each resolves the identifier in word 0, which has to stand exactly as `list` prints it, to the first entry
// of that name. Returns kSuccess; kHelpWord for a help word; kInvalidParameter for a missing identifier, one
// of another kind, or one that nothing has; kHostNotFound without an adapter list. The library is asked only
// for an identifier of the right kind.
StatusCode GetPhyPortFromPortString(const Words& words, PortSelection& selection);
StatusCode GetTargetFromTargetString(const Words& words, TargetSelection& selection);
StatusCode GetLunFromLunString(const Words& words, LunSelection& selection);

// GetPhyPortFromPortString for the commands that a virtual port does not have: kVirtualPort for such a port.
// `class_name` words the log line.
StatusCode GetPhysicalPortFromPortString(const char* class_name, const Words& words,
                                         PortSelection& selection);
