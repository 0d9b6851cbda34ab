// The `info` node of `target`: everything known about one remote target.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetInfoCmdsProcessor();
