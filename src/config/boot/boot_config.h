// The boot configuration: legacy BIOS or UEFI, and up to eight drives.
#pragma once

#include "config/boot/boot_mode.h"
#include "config/boot/boot_record.h"
#include "config/staged/staged_file.h"
#include "config/staged/staged_flow.h"
#include "framework/command_run.h"
#include "framework/device_library/port_entry.h"

class BootConfig {
 public:
  static constexpr StagedNode kNode = {.family = "BootConfig",
                                       .create = "CreateBootConfigFile",
                                       .update = "UpdateBootConfigInFile",
                                       .read = "ReadBootConfigFromFile",
                                       .display = "DisplayBootConfigInfo"};

  explicit BootConfig(const FCProtocolEntry& fc) : fc_(fc), record_(fc) {}

  // Intended: `set` writes in whatever mode the library is in.
  StatusCode Open(CommandRun& run, StagedCommand command);
  void AddAll(StagedValues& values) const;
  StatusCode TakeOptions(CommandRun& run, const StagedFile& file, StagedValues& changes) const;
  StatusCode ReadFile(CommandRun& run, const StagedFile& file);
  StatusCode WriteDevice(CommandRun& run);
  StatusCode Display(CommandRun& run, RebootField reboot) const;

  BootMode Mode() const { return mode_; }
  const HBAParamsInfo& Record() const { return record_.Info(); }

 private:
  const FCProtocolEntry& fc_;
  BootMode mode_ = BootMode::kBios;
  BootRecord record_;
};
