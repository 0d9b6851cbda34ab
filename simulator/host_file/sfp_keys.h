// The pluggable module of a port in host files, and what calls change of it in state files.
#pragma once

#include <memory>

#include "device/sfp_module.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// The module under a port's key `sfp`; null for an empty cage. `defaults` are the values that it leaves out.
std::shared_ptr<SfpModule> ReadSfp(const Value& value, const SfpValues& defaults);

// What calls have changed, in the state file. For an empty cage it is skipped.
void ReadSfpState(const Value& map, SfpModule* module);
StateNode SfpState(const SfpModule& module);

}  // namespace lab
