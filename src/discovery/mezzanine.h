// Whether a port belongs to a mezzanine card, as some commands have to know.
#pragma once

#include "framework/command_run.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"

// Asks the library, in a bracket of its own. kReadFailed for every failure of the call, also in maintenance
// mode; kFileNotFound when the bracket cannot be opened.
StatusCode ReadIsMezzAdapter(const CommandRun& run, const FCProtocolEntry& fc, bool& is_mezz);
