// The `hbaparams` node of `port`: shows, changes, restores and saves the operational parameters of a port.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortHBAParamsCmdsProcessor();
