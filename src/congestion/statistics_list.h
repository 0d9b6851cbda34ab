// The library's list of the second generation's statistics: the elements of a port and of its targets.
#pragma once

#include "framework/device_library/congestion_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"

// Asks for the list, which is never empty on success: the caller then frees it. Fails with kFileNotFound,
// kMaintenanceMode or kStatisticsReadError.
StatusCode GetStatisticsList(const char* class_name, const FCProtocolEntry& fc, SCMRStatisticsEntry*& list);

// Hands the list back. Fails with kFileNotFound or, deliberately also in maintenance mode,
// kStatisticsClearError.
StatusCode FreeStatisticsList(const char* class_name, SCMRStatisticsEntry* list);
