// The extended boot configuration: also NVMe over Fibre Channel, and one addressed boot entry per command.
#pragma once

#include <cstdint>

#include "config/boot/boot_mode.h"
#include "config/boot/boot_record.h"
#include "config/staged/staged_file.h"
#include "config/staged/staged_flow.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/port_entry.h"

class BootConfigExt {
 public:
  static constexpr StagedNode kNode = {.family = "BootConfigExt",
                                       .create = "CreateBootConfigFile",
                                       .update = "UpdateBootConfigInFile",
                                       .read = "ReadBootConfigFromFile",
                                       .display = "DisplayBootConfigInfo",
                                       .value_size = 256};

  explicit BootConfigExt(const FCProtocolEntry& fc) : fc_(fc), record_(fc) {}

  StatusCode Open(CommandRun& run, StagedCommand command);
  void AddAll(StagedValues& values) const;
  StatusCode TakeOptions(CommandRun& run, const StagedFile& file, StagedValues& changes) const;
  StatusCode ReadFile(CommandRun& run, const StagedFile& file);
  StatusCode WriteDevice(CommandRun& run);
  StatusCode Display(CommandRun& run, RebootField reboot) const;

  BootMode Mode() const { return mode_; }
  const HBAParamsInfo& Record() const { return record_.Info(); }
  const NVMeBootRecord& NvmeRecord() const { return nvme_; }

 private:
  bool IsNvme() const { return mode_ == BootMode::kNvme; }
  StatusCode ReadMode(const CommandRun& run, const StagedFile& file);
  StatusCode ReadNvmeDevice(const CommandRun& run);

  const FCProtocolEntry& fc_;
  StagedCommand command_ = StagedCommand::kGet;
  BootMode mode_ = BootMode::kBios;
  BootRecord record_;
  NVMeBootRecord nvme_ = {};
  // Is part of no record: staged, or whether any entry is enabled.
  std::uint32_t nvme_enable_ = 0;
};
