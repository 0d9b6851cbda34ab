// The reports of a target, a second time.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace reference {

// The documents of `target info get`, `target stats get` and `target tlsd get`. The records are those of the
// port, 2688 bytes, and of the target, 1496 bytes.
std::string TargetDocument(bool xml, const void* port_bytes, const void* target_bytes,
                           std::span<const std::uint16_t> luns);
std::string TargetStatisticsDocument(bool xml, const void* target, const void* statistics);
std::string TargetSpeedDocument(bool xml, const void* port_bytes, const void* target, std::uint32_t speed);

}  // namespace reference
