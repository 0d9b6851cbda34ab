// The `info` node of `port`: everything known about one port, for reading only.
#pragma once

#include "framework/command_node.h"

class PhysicalPortInfoCmdsProcessor : public CommandNode {
 public:
  PhysicalPortInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
