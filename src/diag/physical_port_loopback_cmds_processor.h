// The `loopback` node of `port`: sends data through a loop of the port and counts errors.
#pragma once

#include "framework/command_node.h"

class PhysicalPortLoopbackCmdsProcessor : public CommandNode {
 public:
  PhysicalPortLoopbackCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
