// The `info` node of `lun`: everything known about one LUN or namespace.
#pragma once

#include "framework/command_node.h"

class FCLunInfoCmdsProcessor : public CommandNode {
 public:
  FCLunInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
