// The `flashinfo` node of `adapter`: which multi-boot image is on the flash, who wrote it, with which tool
// and when.
#pragma once

#include "framework/command_node.h"

class AdapterFlashInfoCmdsProcessor : public CommandNode {
 public:
  AdapterFlashInfoCmdsProcessor(CmdProcessor* parent, const SubNode& self);
};
