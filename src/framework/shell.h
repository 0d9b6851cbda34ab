// The interactive shell: reads lines and runs each as a command.
#pragma once

#include "framework/multiple_cmds_processor.h"

// Prompts, reads and dispatches lines to `node` until a command asks to leave (kSuccess) or the input ends
// (kWrongWordCount, after a wait of about five seconds).
StatusCode RunShell(MultipleCmdsProcessor& node);
