// The LUNs or namespaces of a target in host files.
#pragma once

#include "device/target_set.h"
#include "host_file/yaml_value.h"

namespace lab {

// Appends to the group the LUNs of its key `luns` or `namespaces`: a number, a range, a map, or a list of
// these. The other keys of the group have been read.
void ReadLuns(const Value& luns, TargetGroup& group);

}  // namespace lab
