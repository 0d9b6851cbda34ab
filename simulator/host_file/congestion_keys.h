// The congestion management of a port in host files, and what calls change of it in state files.
#pragma once

#include "device/host.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Codes that ports and targets share.
inline constexpr NamedNumber kCongestionStates[] = {{"healthy", 0}, {"congested", 1}};
inline constexpr NamedNumber kThrottling[] = {{"disabled", 0}, {"none", 1}, {"active", 2}};

// Reads the map under a port's key `congestion`, into its record too.
void ReadCongestion(const Value& map, Entry& entry);

// What calls can change, in the state file: a map with the profile, and whether the statistics have been
// cleared.
void ReadCongestionState(const Value& map, Entry& entry);
StateNode CongestionState(const CongestionSetup& setup);

}  // namespace lab
