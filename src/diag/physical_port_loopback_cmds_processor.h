// The `loopback` node of `port`: sends data through a loop of the port and counts errors.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortLoopbackCmdsProcessor();
