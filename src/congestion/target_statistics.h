// The counters of one target that the library reads from the port's firmware.
#pragma once

#include "discovery/port_lookup.h"
#include "framework/device_library/target_statistics_records.h"
#include "framework/status.h"

// Asks for the counters of the selected target, with zeros where the library stores none. Fails with
// kFileNotFound or, deliberately also in maintenance mode, kStatisticsReadError. `class_name` words the log
// line.
StatusCode ReadTargetStatistics(const char* class_name, const TargetSelection& selected,
                                TargetPortStatistics& statistics);
