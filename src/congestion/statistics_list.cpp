#include "congestion/statistics_list.h"

#include "framework/library_call.h"

StatusCode GetStatisticsList(const char* class_name, const FCProtocolEntry& fc, SCMRStatisticsEntry*& list) {
  list = nullptr;
  const StatusCode status = CallLibrary(class_name, "Get SCM statistics list", kStatisticsReadError,
                                        [&] { return TORPI_GetSCMRStatisticsList(&fc.handle, &list); });
  if (status != kSuccess) return status;
  return list == nullptr ? kStatisticsReadError : kSuccess;
}

StatusCode FreeStatisticsList(const char* class_name, SCMRStatisticsEntry* list) {
  return CallLibraryWithOneStatus(class_name, "Free SCM statistics list", kStatisticsClearError,
                                  [&] { return TORPI_FreeSCMRStatisticsList(list); });
}
