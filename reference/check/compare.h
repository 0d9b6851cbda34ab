// Compares the descriptions with the program.
#pragma once

#include <filesystem>
#include <vector>

#include "reference/check/program_tree.h"
#include "reference/description.h"
#include "reference/mistakes.h"

namespace reference {

// Adds a mistake for everything that one side has and the other lacks or has in other words. `root` is the
// folder of the project, whose sources hold what the tree does not show. With `partial` a node without a
// description is none.
void Compare(const Reference& reference, const std::vector<ProgramNode>& program,
             const std::filesystem::path& root, bool partial, Mistakes& mistakes);

}  // namespace reference
