// What calls can change of an adapter and its ports, in the form that the state file keeps.
#pragma once

#include "device/host.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Reads a map of that form into the adapter. Skips ports that the adapter does not have.
void ReadAdapterState(const Value& map, Adapter& adapter);

// The same map, with all that calls can change, changed or not.
StateNode AdapterState(const Adapter& adapter);

}  // namespace lab
