// The `update` command of the `adapter` node: writes a flash image to an adapter.
#pragma once

#include "framework/serializer.h"
#include "framework/status.h"
#include "framework/words.h"

// Words: adapter identifier, image file, image type. Writes one "FlashUpdate" document whatever happens, and
// returns the status that it shows.
StatusCode CmdUpdateCommon(Serializer& out, Words& words, OutputMode mode);
