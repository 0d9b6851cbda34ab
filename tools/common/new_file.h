// Files that the tools write.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// Writes a whole file, or standard output for "" and "-". A file that is there is replaced only with `force`.
// The new content takes the file's place at once: whoever reads it meets the old or the new content, whole,
// also after a loss of power; when this returns, the new one is on the disk. Returns an empty text, or why
// the file could not be written, with its name.
std::string WriteOutput(const std::string& path, std::string_view content, bool force);

}  // namespace tools
