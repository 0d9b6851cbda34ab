// What a start of the host decides of a port: the versions that run, the link as it has come up, and counters
// that begin anew.
#pragma once

#include "device/host.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Reads and writes the key `running` of a port's state.
void ReadRunning(const Value& map, Entry& entry);
StateNode RunningState(const Entry& entry);

// Marks the adapter as restarted since the host file was read: the counters of its ports and targets are
// zero, and each port knows its module as it is.
void Restart(Adapter& adapter);

}  // namespace lab
