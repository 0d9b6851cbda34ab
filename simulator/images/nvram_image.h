// The NVRAM of a port as a text file, described in docs/lab-host.md.
#pragma once

#include <string>

#include "device/host.h"

namespace lab {

std::string NvramImage(const Family& family, const HBAParamsInfo& nvram);

// Reads such an image for an adapter into `nvram`. Returns 0, or the result that refuses it; `nvram` is then
// as it was.
std::uint32_t ReadNvramImage(const char* file, const Adapter& adapter, HBAParamsInfo& nvram);

}  // namespace lab
