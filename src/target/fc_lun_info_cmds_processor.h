// The `info` node of `lun`: everything known about one LUN or namespace.
#pragma once

#include "framework/command_node.h"

NodeClass FCLunInfoCmdsProcessor();
