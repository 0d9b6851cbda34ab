// The `bootconfig` node of `port`: shows and changes how a port boots the host.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortBootConfigCmdsProcessor();
