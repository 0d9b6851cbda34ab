// The `fcecho` node of `port`: sends Echo extended link services and shows each answer.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortFCEchoCmdsProcessor();
