// Files of pluggable modules: saved memories and firmware.
#pragma once

#include <string>

#include "device/sfp_module.h"

namespace lab {

// The memory as text: 32 lines of an offset and sixteen bytes, all hexadecimal.
std::string SfpMemoryText(const SfpMemory& memory);

// Reads the content of a file of such text, or of the 512 bytes themselves. Empty lines and lines that begin
// with '#' are remarks. Returns an empty text, or what was expected in place of it.
std::string ReadSfpMemory(const std::string& content, SfpMemory& out);

// Reads a firmware file and stores its version in the module. Returns 0, or the result that refuses it; the
// module is then unchanged. docs/lab-host.md describes the format.
std::uint32_t UpdateSfpFirmware(const char* file, SfpModule& module);

// "2.07" or "2.7": two numbers of at most 255.
bool ReadSfpVersion(std::string_view text, std::pair<std::uint8_t, std::uint8_t>& out);
std::string SfpVersionText(const SfpMemory& memory);

}  // namespace lab
