#include "congestion/target_statistics.h"

#include "framework/library_call.h"

StatusCode ReadTargetStatistics(const char* class_name, const TargetSelection& selected,
                                TargetPortStatistics& statistics) {
  TargetStatisticsAddress address = {};
  address.kind = kTargetByPortName;
  address.port_name = selected.target->port_name;
  statistics = {};
  return CallLibraryWithOneStatus(class_name, "Get Port Stats FC", kStatisticsReadError, [&] {
    return TORPI_GetPortStatisticsFC(selected.fc->handle.sd_handle, 0, &address, &statistics);
  });
}
