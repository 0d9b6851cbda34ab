// The `fcping` node of `port`: pings a remote port.
#pragma once

#include "framework/command_node.h"

class PhysicalPortFCPingCmdsProcessor : public CommandNode {
 public:
  PhysicalPortFCPingCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
