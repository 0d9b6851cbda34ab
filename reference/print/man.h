// Manual pages in mdoc.
#pragma once

#include <map>
#include <string>

#include "reference/description.h"

namespace reference {

// All pages by their names below man/: "man1/zfcesxcli-port-dmi.1" for each node, and one for each further
// page.
std::map<std::string, std::string> ManPages(const Reference& reference);

}  // namespace reference
