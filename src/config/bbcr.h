// The buffer-to-buffer credit recovery (BB_SCN of FC-FS) of a port: its setting, which can be staged, and its
// state.
#pragma once

#include <cstdint>

#include "config/staged/staged_file.h"
#include "config/staged/staged_flow.h"
#include "framework/command_run.h"
#include "framework/device_library/fixed_text.h"
#include "framework/device_library/port_entry.h"

class Bbcr {
 public:
  static constexpr StagedNode kNode = {.family = "BBCR",
                                       .create = "CreateBBCRFile",
                                       .update = "UpdateBBCRInFile",
                                       .read = "ReadBBCRFromFile",
                                       .display = "DisplayBBCRInfo",
                                       .always_needs_reboot = true};

  explicit Bbcr(const FCProtocolEntry& fc) : fc_(fc) {}

  StatusCode Open(CommandRun& run, StagedCommand command);
  void AddAll(StagedValues& values) const;
  static StatusCode TakeOptions(CommandRun& run, const StagedFile& file, StagedValues& changes);
  StatusCode ReadFile(CommandRun& run, const StagedFile& file);
  StatusCode WriteDevice(CommandRun& run);
  StatusCode Display(CommandRun& run, RebootField reboot) const;

  // What one read of the device gives.
  struct State {
    std::uint8_t status;      // 1: on
    std::uint8_t configured;  // count, at most 15
    std::uint8_t online;      // 0: offline
    std::uint8_t negotiated;  // count
    FixedText<64> offline_reason;
  };
  const State& Record() const { return state_; }

 private:
  const FCProtocolEntry& fc_;
  State state_ = {};
};
