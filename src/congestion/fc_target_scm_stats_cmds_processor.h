// The `scmstats` node of `target`: the counters of congestion management towards one target.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetSCMStatsCmdsProcessor();
