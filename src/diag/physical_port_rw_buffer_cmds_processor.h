// The `rwbuffer` node of `port`: the read/write buffer test, with the result of each remote port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortRWBufferCmdsProcessor();
