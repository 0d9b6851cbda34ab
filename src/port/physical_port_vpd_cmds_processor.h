// The `vpd` node of `port`: the adapter's Vital Product Data as pairs of a tag and its value.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortVPDCmdsProcessor();
