// The pages of docs/reference/.
#pragma once

#include <map>
#include <string>

#include "reference/description.h"

namespace reference {

// All pages by the names of their files: README.md with the nodes and the index by task, messages.md, and a
// page for each node. Their links lead to each other alone.
std::map<std::string, std::string> MarkdownPages(const Reference& reference);

}  // namespace reference
