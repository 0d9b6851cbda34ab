// The `update` command of the `adapter` node: writes a flash image to an adapter.
#pragma once

#include "framework/command_run.h"
#include "framework/status.h"

// Words: adapter identifier, image file, image type. Writes one "FlashUpdate" document whatever happens, and
// returns the status that it shows.
StatusCode CmdUpdateCommon(CommandRun& run);
