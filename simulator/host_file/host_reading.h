// A host file while it is read: what its maps have to know of each other.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "device/host.h"

namespace lab {

struct HostReading {
  Host& host;
  std::set<std::string> port_names;
  // All that the host has so far, for its limits.
  std::uint64_t ports = 0;  // virtual ones too
  std::uint64_t targets = 0;
  std::uint64_t luns = 0;
};

}  // namespace lab
