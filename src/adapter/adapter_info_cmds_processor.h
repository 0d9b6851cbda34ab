// The `info` node of `adapter`: identity of an adapter and the versions of all its flash parts.
#pragma once

#include "framework/command_node.h"

NodeClass AdapterInfoCmdsProcessor();
