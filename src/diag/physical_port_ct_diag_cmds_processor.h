// The `ctdiag` node of `port`: Common Transport traffic to a remote port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortCTDiagCmdsProcessor();
