// What changed of a pluggable module.
#pragma once

#include "recording/recording.h"
#include "tools/lab/diff/report.h"

namespace diff {

// Reports a module that was put in, taken out or swapped; of the same module, values that moved noticeably or
// crossed a limit. Measured values that moved less are what time does: no difference.
void CompareModules(Report& report, const recording::SfpImage& before, const recording::SfpImage& after);

}  // namespace diff
