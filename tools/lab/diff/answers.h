// What changed in the answers of the calls on one port, on one target and of the whole host.
#pragma once

#include "recording/recording.h"
#include "tools/lab/diff/report.h"

namespace diff {

void ComparePortAnswers(Report& report, const recording::ProtocolRecording& before,
                        const recording::ProtocolRecording& after);

void CompareTargetAnswers(Report& report, const recording::TargetRecording& before,
                          const recording::TargetRecording& after);

void CompareHostAnswers(Report& report, const recording::HostRecording& before,
                        const recording::HostRecording& after);

}  // namespace diff
