// The `scmstats` node of `port`: the counters of a port's congestion management, and their reset.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortSCMStatsCmdsProcessor();
