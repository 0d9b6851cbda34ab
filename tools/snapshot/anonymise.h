// Takes out of a recording what says whose host it is.
#pragma once

#include "recording/recording.h"

namespace snapshot {

// Replaces World Wide Names, serial numbers, NVMe qualified names, host identifiers and the identifiers of
// LUNs by made-up ones, in the records and inside images, whose check sums stay as right as they were. The
// records' unnamed gaps become zero, and so do those parts of images that belong to their makers.
void Anonymise(recording::HostRecording& host);

}  // namespace snapshot
