// The `scmchk` node of `target`: whether one target is congested at this moment.
#pragma once

#include "framework/command_node.h"

class FCTargetSCMChkCmdsProcessor : public CommandNode {
 public:
  FCTargetSCMChkCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
