// The `fwdump` node of `port`: fetches the firmware dump of a port and writes it to a file.
#pragma once

#include "framework/command_node.h"

NodeClass PhysicalPortFwDumpCmdsProcessor();
