// The `adapter` node: lists adapters, updates their flash, and holds the sub-nodes of one adapter.
#pragma once

#include "framework/command_node.h"

NodeClass AdapterCmdsProcessor();
