// Reading what a host file tells about the pluggable module of a port, and keeping what calls change of it.
#pragma once

#include <memory>

#include "device/sfp_module.h"
#include "host_file/yaml_value.h"

namespace lab {

// The module under a port's key `sfp`; null for an empty cage. `defaults` are the values that it leaves out.
std::shared_ptr<SfpModule> ReadSfp(const Value& value, const SfpValues& defaults);

// What calls have changed, in the state file. An empty cage leaves it aside.
void ReadSfpState(const Value& map, SfpModule* module);
YAML::Node SfpState(const SfpModule& module);

}  // namespace lab
