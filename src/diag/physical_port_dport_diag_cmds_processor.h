// The `dportdiag` node of `port`: whether a port is a diagnostic port, and the link test that such a port
// offers.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortDPortDiagCmdsProcessor();
