// The `fcecho` node of `port`: sends Echo extended link services and shows each answer.
#pragma once

#include "framework/command_node.h"

class PhysicalPortFCEchoCmdsProcessor : public CommandNode {
 public:
  PhysicalPortFCEchoCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
