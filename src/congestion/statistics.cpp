#include "congestion/statistics.h"

#include "framework/library_call.h"

StatusCode ReadTargetStatistics(const CommandRun& run, const TargetSelection& selected,
                                TargetPortStatistics& statistics) {
  TargetStatisticsAddress address = {};
  address.kind = kTargetByPortName;
  address.port_name = selected.target->port_name;
  statistics = {};
  return CallLibraryWithOneStatus(run, "Get Port Stats FC", kStatisticsReadError, [&] {
    return TORPI_GetPortStatisticsFC(selected.fc->handle.sd_handle, 0, &address, &statistics);
  });
}

StatusCode GetStatisticsList(const CommandRun& run, const FCProtocolEntry& fc, SCMRStatisticsEntry*& list) {
  list = nullptr;
  const StatusCode status = CallLibrary(run, "Get SCM statistics list", kStatisticsReadError,
                                        [&] { return TORPI_GetSCMRStatisticsList(&fc.handle, &list); });
  if (status != kSuccess) return status;
  return list != nullptr ? kSuccess : run.Refuse(kStatisticsReadError, "SCM statistics list is NULL");
}

StatusCode FreeStatisticsList(const CommandRun& run, SCMRStatisticsEntry* list) {
  return CallLibraryWithOneStatus(run, "Free SCM statistics list", kStatisticsClearError,
                                  [&] { return TORPI_FreeSCMRStatisticsList(list); });
}
