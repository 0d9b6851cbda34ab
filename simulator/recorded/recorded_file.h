// Files that hold what a host's device library answered. docs/snapshots.md describes them.
#pragma once

#include <string>
#include <string_view>

#include "recording/recording.h"

namespace lab {

// True for the text of such a file: it has the key `snapshot` at the beginning of a line.
bool IsRecording(std::string_view text);

// Fills `host` from the text. Returns an empty text, or the mistake with `name` and its line; `host` is then
// of no use.
std::string ReadRecording(const std::string& name, const std::string& text, recording::HostRecording& host);

}  // namespace lab
