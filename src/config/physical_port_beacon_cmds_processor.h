// The `beacon` node of `port`: shows and sets the light that makes an adapter findable.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortBeaconCmdsProcessor();
