// A recording as the text of a host file, which the simulated library plays back. docs/snapshots.md describes
// the form.
#pragma once

#include <string>

#include "recording/recording.h"

namespace recording {

// What the key `snapshot`, which marks the form, has as its value.
inline constexpr unsigned kTextVersion = 1;

// The whole file. Equal recordings give equal texts.
std::string ToText(const HostRecording& host);

}  // namespace recording
