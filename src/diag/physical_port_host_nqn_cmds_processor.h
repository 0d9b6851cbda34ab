// The `hnqn` node of `port`: registers the port's NVMe host name with the switch.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortHostNQNCmdsProcessor();
