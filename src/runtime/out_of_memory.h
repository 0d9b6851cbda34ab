#pragma once

// Ends the program when memory that it cannot do without is not to be had: flushes what every stream holds,
// so that a document keeps what was written of it, prints "zfcesxcli: out of memory" on standard error and
// exits with status 0, as a command always does. No destructor and no exit function runs, and nothing here
// takes memory.
[[noreturn]] void EndWithoutMemory();
