// The buffer-to-buffer credit recovery (BB_SCN of FC-FS) of a port: its setting, which can be staged, and its
// state.
#pragma once

#include "config/staged_settings.h"

extern const StagedNode kBbcrNode;

class Bbcr : public StagedSettings {
 public:
  Bbcr() : StagedSettings(kBbcrNode) {}

  StatusCode Prepare(const Words& words) override;
  StatusCode ReadDevice() override;
  StagedValues AllValues() const override;
  StatusCode CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const override;
  StatusCode ReadFile(const StagedFile& file) override;
  StatusCode WriteDevice() override;
  // Deliberately without asking the library, and also when nothing has changed.
  bool NeedsReboot() const override { return true; }
  StatusCode Display(Serializer& out, OutputMode mode, RebootField reboot) const override;

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
  State state_ = {};
};
