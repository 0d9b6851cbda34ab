// Reads the files below reference/.
#pragma once

#include <string>

#include "reference/description.h"
#include "reference/mistakes.h"

namespace reference {

// Reads the descriptions in `folder`. What is wrong with them is added to `mistakes`, each once; what could
// be read is in the result all the same.
Reference ReadReference(const std::string& folder, Mistakes& mistakes);

}  // namespace reference
