// A host as a picture: one SVG file that needs nothing else, for light and dark screens.
#pragma once

#include <string>
#include <string_view>

#include "tools/lab/map/host_view.h"

namespace map {

// `name` says which host it is: a clean text.
std::string Picture(const HostView& host, std::string_view name);

}  // namespace map
