// What zfc-lab does when there is no memory.
#pragma once

#include <string>

namespace zfc_lab {

// Says so on standard error and ends zfc-lab with the status of a mistake. Takes no memory.
[[noreturn]] void EndWithoutMemory();

// Sets the variable of the environment, or ends: without it another host would be played than the one asked
// for.
void SetVariable(const char* name, const std::string& value);

}  // namespace zfc_lab
