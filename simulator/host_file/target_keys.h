// The targets of a port in host files, and what calls change of them in state files.
#pragma once

#include "device/host.h"
#include "host_file/host_reading.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Defaults of targets: the places of their adapter and port, from 0, and the speed code of a port that is
// down.
struct TargetDefaults {
  std::size_t adapter;
  std::uint32_t port;
  std::uint32_t speed;
};

// Reads the value of a port's key `targets`. All other keys of the entry have been read.
void ReadTargets(const Value& value, const TargetDefaults& defaults, Entry& entry, HostReading& host);

// The link speeds that calls have set, in the state file: a map of target names. Skips targets that the port
// does not have.
void ReadTargetSpeeds(const Value& map, TargetSet& targets);
StateNode TargetSpeeds(const TargetSet& targets);

}  // namespace lab
