// The reports of congestion management, a second time.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace reference {

// What the library answers to a command.
struct CongestionAnswers {
  std::uint32_t enabled_result;
  std::uint8_t enabled;
  std::uint32_t list_result;
  std::span<const void* const> list;  // elements of 976 bytes
  std::uint32_t free_result;
  std::uint32_t counters_result;
  const void* counters;  // 184 bytes
};

// The documents of `port scmstats get`, `port scmchk get`, `target scmstats get` and `target scmchk get`. The
// records are those of the port, 2688 bytes, and of the target, 1496 bytes.
std::string PortCongestionStatistics(bool xml, const void* port_bytes, const CongestionAnswers& answers);
std::string PortCongestion(bool xml, const void* port_bytes, const CongestionAnswers& answers);
std::string TargetCongestionStatistics(bool xml, const void* port_bytes, const void* target_bytes,
                                       const CongestionAnswers& answers);
std::string TargetCongestion(bool xml, const void* port_bytes, const void* target_bytes,
                             const CongestionAnswers& answers);

}  // namespace reference
