// The operational parameters of a port, for the length of one command: read, staged, written and shown.
#pragma once

#include "config/staged/staged_file.h"
#include "config/staged/staged_flow.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/report_frame.h"

inline constexpr ReportFrame kHbaParamsFrame = {"HBAParametersInfo", "HBAParameters", "HBAParametersList"};

class HbaParams {
 public:
  static constexpr StagedNode kNode = {.family = "HBAParams",
                                       .create = "CreateHBAParamsFile",
                                       .update = "UpdateHBAParamsInFile",
                                       .read = "ReadHBAParamsFromFile",
                                       .display = "DisplayHBAParamsInfo"};

  explicit HbaParams(const FCProtocolEntry& fc) : fc_(fc) {}

  StatusCode Open(CommandRun& run, StagedCommand command);
  void AddAll(StagedValues& values) const;
  StatusCode TakeOptions(CommandRun& run, const StagedFile& file, StagedValues& changes) const;
  StatusCode ReadFile(CommandRun& run, const StagedFile& file);
  StatusCode WriteDevice(CommandRun& run);
  StatusCode Display(CommandRun& run, RebootField reboot) const;

  const HBAParamsInfo& Record() const { return record_; }

 private:
  const FCProtocolEntry& fc_;
  HBAParamsInfo record_ = {};
};
