// The options of the extended boot configuration that together address one boot entry: its number, the port
// name of its target, a disk, and for NVMe whether it is enabled.
#pragma once

#include "config/boot/boot_mode.h"
#include "config/staged/staged_file.h"
#include "framework/command_run.h"
#include "framework/device_library/port_entry.h"
#include "framework/status.h"

// Checks the options and adds the keys of the entry that they address; none of them given changes nothing.
// kFcpTargetOptions or kNvmeTargetOptions for an incomplete set, kBootModeNeeded for a number that the mode
// or the adapter lacks, kInvalidParameter for any other refusal.
StatusCode TakeBootEntry(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode,
                         StagedValues& changes);
