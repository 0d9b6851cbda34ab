// The `scmchk` node of `target`: whether one target is congested at this moment.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetSCMChkCmdsProcessor();
