// The `flashinfo` node of `adapter`: which multi-boot image is on the flash, who wrote it, with which tool
// and when.
#pragma once

#include "framework/command_node.h"

NodeClass AdapterFlashInfoCmdsProcessor();
