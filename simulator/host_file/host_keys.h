// Reading the host file. docs/lab-host.md describes the keys.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

// Fills `host`, which is left unlinked, from the text of a host file. Returns an empty text, or the mistake
// with `name` and its line; `host` is then of no use.
std::string ReadHost(const std::string& name, const std::string& text, Host& host);

}  // namespace lab
