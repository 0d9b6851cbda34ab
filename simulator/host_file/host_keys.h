// The host file. docs/lab-host.md describes its keys.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// Fills `host`, without linking it, from the text of a host file. Returns an empty text, or the mistake with
// `name` and its line; `host` is then of no use.
std::string ReadHost(const std::string& name, const std::string& text, Host& host);

}  // namespace lab
