// The `bootconfigext` node of `port`: as `bootconfig`, with NVMe over Fibre Channel as a third boot mode.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortBootConfigExtCmdsProcessor();
