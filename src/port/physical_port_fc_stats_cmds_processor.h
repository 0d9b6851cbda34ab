// The `stats` node of `port`: the driver's and the firmware's counters of a port, and the reset of the
// latter.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortFCStatsCmdsProcessor();
