// The `scmstats` node of `target`: the counters of congestion management towards one target.
#pragma once

#include "framework/command_node.h"

class FCTargetSCMStatsCmdsProcessor : public CommandNode {
 public:
  FCTargetSCMStatsCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
