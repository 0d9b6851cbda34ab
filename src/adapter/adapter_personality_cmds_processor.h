// The `personality` node of `adapter`: whether an adapter runs as a Fibre Channel or as a converged adapter.
#pragma once

#include "framework/command_node.h"

NodeClass AdapterPersonalityCmdsProcessor();
