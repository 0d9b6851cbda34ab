// The `port` node: lists ports, writes an NVRAM image to one, and holds the sub-nodes of one port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortCmdsProcessor();
