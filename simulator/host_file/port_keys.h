// The ports of an adapter in host files.
#pragma once

#include <set>
#include <string>

#include "device/host.h"
#include "host_file/yaml_value.h"

namespace lab {

// Appends to `adapter`, all of whose own keys have been read, the port that the map describes, with its
// virtual ports. `names` holds the port names of the host so far.
void ReadPort(const Value& map, Adapter& adapter, std::size_t adapter_index, std::set<std::string>& names);

}  // namespace lab
