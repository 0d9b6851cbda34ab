// The `lun` node: lists LUNs and namespaces, and holds the sub-node of one of them.
#pragma once

#include "framework/command_node.h"

NodeClass FCLunCmdsProcessor();
