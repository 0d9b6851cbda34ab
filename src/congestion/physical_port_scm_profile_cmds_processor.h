// The `scmprofile` node of `port`: shows and sets how strongly a port answers congestion in the fabric.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortSCMProfileCmdsProcessor();
