// The `target` node: lists the remote targets that the ports see, and holds the sub-nodes of one target.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetCmdsProcessor();
