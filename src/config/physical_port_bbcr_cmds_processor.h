// The `bbcr` node of `port`: shows and changes the buffer-to-buffer credit recovery of a port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortBBCRCmdsProcessor();
