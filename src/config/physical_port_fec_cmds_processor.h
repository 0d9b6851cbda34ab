// The `fec` node of `port`: shows and changes the forward error correction of a port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortFECCmdsProcessor();
