// Files of the sources that tests read.
#pragma once

#include <string>

// The full path of a file, named from the project's folder: "examples/small.yaml".
std::string SourcePath(const std::string& name);
