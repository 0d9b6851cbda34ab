// Link speeds as host files and state files write them, in Gbps, and as the library's records hold them.
#pragma once

#include "host_file/yaml_value.h"

namespace lab {

inline constexpr NamedNumber kSpeedCodes[] = {{"1", 1},   {"2", 2},   {"4", 4},   {"8", 8},
                                              {"10", 16}, {"16", 22}, {"32", 50}, {"64", 100}};

}  // namespace lab
