// The `rdp` node of `port`: sends a Read Diagnostic Parameters ELS and shows the answer.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortRDPCmdsProcessor();
