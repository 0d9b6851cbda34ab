// Congestion management of a port: what its record does not hold.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "framework/device_library/congestion_records.h"
#include "framework/device_library/port_entry.h"

namespace lab {

struct Entry;

// The place of the port's own element in the statistics list.
enum class PortElement : std::uint8_t { kFirst, kSecond, kAbsent };

struct CongestionSetup {
  bool enabled = true;
  PortElement port_element = PortElement::kFirst;
  // Counters; the names of the elements are filled in when the list is made.
  SCMRStatisticsEntry port{};
  std::map<std::uint64_t, SCMRStatisticsEntry> targets;  // by the number of the port name
  std::uint32_t departed = 0;                            // targets that the port no longer sees
  SCMRProfile profile{0, ProfileManagement::kDriverSettings, 0, {}};
  bool cleared = false;
};

// Stores the first values of a port with congestion management in its record.
void FillCongestion(FCProtocolEntry& entry);

// The statistics list, chained; empty when there is neither an element of the port nor a target.
using StatisticsList = std::vector<SCMRStatisticsEntry>;
std::unique_ptr<StatisticsList> MakeStatisticsList(const Entry& entry);

// Sets all counters to zero.
void ClearStatistics(CongestionSetup& setup);

}  // namespace lab
