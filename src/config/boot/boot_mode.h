// The boot mode: what the user asks for, what the device library is in, and what the adapter has.
#pragma once

#include <cstdint>
#include <span>

#include "config/staged/staged_file.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/inline_text.h"
#include "framework/status.h"

// A mode that a node knows: its word on the command line and its number in a staged file.
struct BootModeName {
  BootMode mode;
  InlineText<4> word;
  std::uint32_t staged;
};

// The modes of a node.
struct BootModes {
  std::span<const BootModeName> names;
  bool leaves_unknown_mode;  // whether a library in a mode that the node does not know is left in it
};

inline constexpr const char* kBootModeKey = "Boot_Mode";

// Reads the mode that the user asks for (the legacy one without the option), brings the library in line with
// it, and checks that the adapter holds the boot code for it. kInvalidParameter for a word that names no
// mode, kBootModeNotSupported for a mode that the adapter lacks, kNoRomBios or kNoRomUefi without its boot
// code, kUpdateFailed or kMaintenanceMode when the library does not change.
StatusCode ChooseBootMode(CommandRun& run, const BootModes& modes, const FCProtocolEntry& fc, BootMode& mode);

// Adds the file's number of the mode.
void AddBootMode(const BootModes& modes, BootMode mode, StagedValues& values);

// Logs the mode at the trace level.
void LogBootMode(const CommandRun& run, BootMode mode);
