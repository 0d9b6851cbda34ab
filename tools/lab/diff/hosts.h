// What changed between two hosts.
#pragma once

#include "recording/recording.h"
#include "tools/lab/diff/report.h"

namespace diff {

// Compares two hosts, or one host at two times. Changes are in the order of adapters by model and serial
// number, ports by number, targets by port name and LUNs by number. Adapters are the same by model and serial
// number, ports by port name, else by number, targets by port name, LUNs by number.
Report CompareHosts(const recording::HostRecording& before, const recording::HostRecording& after);

}  // namespace diff
