// The text file beside the program, to which its help sends the reader.
#pragma once

#include <string>

#include "reference/description.h"

namespace reference {

// ZFC_ESXCLI_Readme.txt: everything in one text of at most 80 columns.
std::string ReadmeText(const Reference& reference);

}  // namespace reference
