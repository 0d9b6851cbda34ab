// Files as they are.
#pragma once

#include <filesystem>
#include <string>

namespace reference {

// The content of a file; empty for one that can't be read.
std::string ReadWholeFile(const std::filesystem::path& path);

}  // namespace reference
