// The configuration of a port in host files, and what calls change of it in state files.
#pragma once

#include "device/config_setup.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Reads the map under a port's key `configuration`.
void ReadConfiguration(const Value& map, ConfigSetup& setup);

// All of it in the same form, for the state file.
StateNode ConfigurationState(const ConfigSetup& setup);

}  // namespace lab
