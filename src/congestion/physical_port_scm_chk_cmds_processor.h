// The `scmchk` node of `port`: whether a port is congested at this moment, and what it does about it.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortSCMChkCmdsProcessor();
