// The ports of an adapter in host files.
#pragma once

#include <cstddef>

#include "device/host.h"
#include "host_file/host_reading.h"
#include "host_file/yaml_value.h"

namespace lab {

// Appends to `adapter`, all of whose own keys have been read, the port that the map describes, with its
// virtual ports.
void ReadPort(const Value& map, Adapter& adapter, std::size_t adapter_index, HostReading& host);

}  // namespace lab
