// The `info` node of `port`: everything known about one port, for reading only.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortInfoCmdsProcessor();
