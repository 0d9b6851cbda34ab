// The diagnostics of a port in host files, and what calls change of them in state files.
#pragma once

#include "device/diag_setup.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Reads the map under a port's key `diagnostics`.
void ReadDiagnostics(const Value& map, DiagSetup& setup);

// The part of it that calls can change, in the same form.
StateNode DiagnosticsState(const DiagSetup& setup);

}  // namespace lab
