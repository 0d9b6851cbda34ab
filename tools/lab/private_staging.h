// A staging folder for one process alone, in the place of the machine's.
#pragma once

#include <string>

namespace zfc_lab {

// Where the program keeps staged files.
inline constexpr char kStagingFolder[] = "/opt/ZunaFcEsxcliPlugin/tmp";

// Gives this process, and what it executes, a mount namespace of its own in which the staging folder is
// there, private: `folder` itself, or an empty one that ends with the process where `folder` is empty.
// Nothing of the machine changes. Returns an empty text, or why that can't be; files are then where they
// were.
std::string MakeStagingPrivate(const std::string& folder);

}  // namespace zfc_lab
