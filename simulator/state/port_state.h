// What calls have changed on the ports of an adapter, for the state file.
#pragma once

#include "device/host.h"
#include "host_file/yaml_value.h"

namespace lab {

// Reads a map of port names into the ports of the adapter; names that it does not have are left aside.
void ReadPortStates(const Value& map, Adapter& adapter);

// The same map, with the changed ports of the adapter.
YAML::Node PortStates(const Adapter& adapter);

}  // namespace lab
