// A host as an indented text for a terminal.
#pragma once

#include <string>

#include "tools/lab/map/host_view.h"

namespace map {

std::string TextTree(const HostView& host);

}  // namespace map
