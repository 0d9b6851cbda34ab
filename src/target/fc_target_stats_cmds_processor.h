// The `stats` node of `target`: the link error counters of one target.
#pragma once

#include "framework/command_node.h"

NodeClass FCTargetStatsCmdsProcessor();
