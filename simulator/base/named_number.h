// Numbers of the library's records by the names that host files and state files give them.
#pragma once

#include <cstdint>

namespace lab {

struct NamedNumber {
  const char* name;
  std::uint32_t number;
};

// Codes of link speeds by the speeds in Gbps.
inline constexpr NamedNumber kSpeedCodes[] = {{"1", 1},   {"2", 2},   {"4", 4},   {"8", 8},
                                              {"10", 16}, {"16", 22}, {"32", 50}, {"64", 100}};

}  // namespace lab
