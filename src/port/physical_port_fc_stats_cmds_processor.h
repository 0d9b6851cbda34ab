// The `stats` node of `port`: the driver's and the firmware's counters of a port, and the reset of the
// latter.
#pragma once

#include "framework/command_node.h"

class PhysicalPortFCStatsCmdsProcessor : public CommandNode {
 public:
  PhysicalPortFCStatsCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
