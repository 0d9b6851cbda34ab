// The `dmi` node: shows what a port's pluggable module says about itself, saves it in a file, and updates
// the module's firmware.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortDMICmdsProcessor();
