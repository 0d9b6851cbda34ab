// Hosts that the commands read.
#pragma once

#include <optional>
#include <string>

#include "recording/recording.h"

namespace zfc_lab {

// Reads the host of a file by itself, without state, faults and trace; for an empty name the host that the
// environment gives. None after a mistake, which standard error then has, ahead of `program`'s own line.
std::optional<recording::HostRecording> LoadHost(const char* program, const std::string& file);

}  // namespace zfc_lab
