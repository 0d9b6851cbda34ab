// The `ctdiag` node of `port`: Common Transport traffic to a remote port.
#pragma once

#include "framework/command_node.h"

class PhysicalPortCTDiagCmdsProcessor : public CommandNode {
 public:
  PhysicalPortCTDiagCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
