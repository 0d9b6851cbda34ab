// The `fcping` node of `port`: pings a remote port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortFCPingCmdsProcessor();
