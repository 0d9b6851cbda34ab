// The `rwbuffer` node of `port`: the read/write buffer test, with the result of each remote port.
#pragma once

#include "framework/command_node.h"

class PhysicalPortRWBufferCmdsProcessor : public CommandNode {
 public:
  PhysicalPortRWBufferCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
