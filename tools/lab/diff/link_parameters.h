// A switch's answer to Read Diagnostic Parameters (FC-LS).
#pragma once

#include "recording/recording.h"
#include "tools/lab/diff/report.h"

namespace diff {

// Reports counters that rose, values of the switch's module that moved noticeably, and whether anything else
// differs. Values that moved less are what time does.
void CompareLinkParameters(Report& report, const recording::SizedBytes& before,
                           const recording::SizedBytes& after);

}  // namespace diff
