// Reads a host through the device library that the program would load.
#pragma once

#include <string>
#include <vector>

#include "recording/recording.h"

namespace snapshot {

struct CaptureOptions {
  bool with_rdp = false;  // run Read Diagnostic Parameters, a link diagnostic, too
};

// Brings the device library up, makes its reading calls and takes it down. Never makes a call that changes
// anything. The caller has to keep the library's own prints off its standard output. `cut` gets one sentence
// for every list that is longer than a recording holds, or that leads back into itself.
recording::HostRecording Capture(const CaptureOptions& options, std::vector<std::string>& cut);

}  // namespace snapshot
