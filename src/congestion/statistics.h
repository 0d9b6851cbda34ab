// The counters that the library reads for a port or one of its targets.
#pragma once

#include "discovery/port_lookup.h"
#include "framework/command_run.h"
#include "framework/device_library/congestion_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_statistics_records.h"
#include "framework/status.h"

// Asks for the counters of the selected target, with zeros where the library stores none. Fails with
// kFileNotFound or, also in maintenance mode, kStatisticsReadError.
StatusCode ReadTargetStatistics(const CommandRun& run, const TargetSelection& selected,
                                TargetPortStatistics& statistics);

// Asks for the list of the second generation's statistics: the elements of the port and of its targets. On
// success it is never empty, and belongs to the caller until it is freed. Fails with kFileNotFound,
// kMaintenanceMode or kStatisticsReadError.
StatusCode GetStatisticsList(const CommandRun& run, const FCProtocolEntry& fc, SCMRStatisticsEntry*& list);

// Hands the list back. Fails with kFileNotFound or, also in maintenance mode, kStatisticsClearError.
StatusCode FreeStatisticsList(const CommandRun& run, SCMRStatisticsEntry* list);

// Gets the list, has `display(list)` write its document and return its status, and frees the list. A failure
// writes a document of its own, after the statistics when it is the freeing that fails. `maintenance` is the
// status of a list that is refused in maintenance mode.
template <class Display>
StatusCode ShowStatisticsList(CommandRun& run, const FCProtocolEntry& fc, StatusCode maintenance,
                              Display display) {
  SCMRStatisticsEntry* list = nullptr;
  StatusCode status = GetStatisticsList(run, fc, list);
  if (status == kMaintenanceMode) status = maintenance;
  if (status != kSuccess) return run.DisplayError(status);
  const StatusCode shown = display(*list);
  const StatusCode freed = FreeStatisticsList(run, list);
  return freed == kSuccess ? shown : run.DisplayError(freed);
}
