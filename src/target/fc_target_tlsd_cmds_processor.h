// The `tlsd` node of `target`: the link speed used towards one target.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetTLSDCmdsProcessor();
