// The host file. docs/lab-host.md describes its keys.
#pragma once

#include <string>

#include "base/limits.h"
#include "device/host.h"

namespace lab {

// Fills `host`, without linking it, from the text of a host file. Returns an empty text, or a line for every
// mistake, "<name>:<line>:<column>: <mistake>", without a line end after the last; `host` is then of no use.
std::string ReadHost(const std::string& name, const std::string& text, Host& host,
                     const Limits& limits = kLimits);

}  // namespace lab
