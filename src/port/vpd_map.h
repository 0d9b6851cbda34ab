// Reads a Vital Product Data image: the resources of a PCI VPD area, as the PCI standard tags them.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "framework/command_run.h"

// The values of an image by their two-letter keywords, in byte order; the identifier string is that of "PI".
using VpdMap = std::map<std::string, std::string>;

// Walks the image's resources up to its end tag or its last byte. A keyword that comes again overwrites the
// value. A length that leads outside the image is cut at its end, and a missing one is 0.
VpdMap MapVpdData(CommandRun& run, std::span<const std::uint8_t> image);
