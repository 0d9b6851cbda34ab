// What calls have changed, kept from run to run.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// Applies the state in the file, if it exists, to a linked host. Returns an empty text, or the mistake.
std::string LoadState(const std::string& path, Host& host);

// Writes the state of the changed adapters and the reboot flag; the file keeps its lines about other
// adapters. It is replaced as a whole. Returns an empty text, or why it could not be written.
std::string SaveState(const std::string& path, const Host& host);

}  // namespace lab
