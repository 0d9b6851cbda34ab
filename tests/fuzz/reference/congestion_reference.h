// The reports of congestion management, a second time.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

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

// What the library answers to `port scmprofile`: the results and the records, 16 bytes, of both reads, and
// the result of the write between them.
struct ProfileAnswers {
  std::uint32_t results[3];  // read, write, read
  const std::uint8_t* first;
  const std::uint8_t* second;
};

// A document, and the calls that it takes: "r" is a read and "w" the write, which has this record.
struct ProfileOutcome {
  std::string document;
  std::string calls;
  std::array<std::uint8_t, 16> written = {};
};

// `port scmprofile get` and `set` with these words, the first of which names a port: the one of the record,
// or none when it is not `identifier`.
ProfileOutcome ShowProfile(bool xml, const void* port_bytes, std::string_view identifier,
                           std::span<const std::string> words, const ProfileAnswers& answers);
ProfileOutcome ChangeProfile(bool xml, const void* port_bytes, std::string_view identifier,
                             std::span<const std::string> words, const ProfileAnswers& answers);

}  // namespace reference
