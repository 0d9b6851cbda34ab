// The operational parameters of a port: how a staged file holds them, how they are read, written and shown.
#pragma once

#include "config/staged_settings.h"
#include "framework/device_library/config_records.h"

// The structure names and messages of the node's documents.
extern const StagedNode kHbaParamsNode;

class HbaParams : public StagedSettings {
 public:
  HbaParams() : StagedSettings(kHbaParamsNode) {}

  StatusCode Prepare(const Words&) override { return kSuccess; }
  StatusCode ReadDevice() override;
  StagedValues AllValues() const override;
  StatusCode CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const override;
  StatusCode ReadFile(const StagedFile& file) override;
  StatusCode WriteDevice() override;
  StatusCode Display(Serializer& out, OutputMode mode, RebootField reboot) const override;

  const HBAParamsInfo& Record() const { return record_; }

 private:
  HBAParamsInfo record_ = {};
};
