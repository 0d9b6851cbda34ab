// The extended boot configuration: also NVMe over Fibre Channel, and one addressed boot entry per command.
#pragma once

#include "config/boot_settings.h"

class BootConfigExt : public BootSettings {
 public:
  BootConfigExt();

  StatusCode ReadDevice() override;
  StagedValues AllValues() const override;
  StatusCode CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const override;
  StatusCode ReadFile(const StagedFile& file) override;
  StatusCode WriteDevice() override;
  StatusCode Display(Serializer& out, OutputMode mode, RebootField reboot) const override;

  const NVMeBootRecord& NvmeRecord() const { return nvme_; }

 protected:
  bool MustChangeFrom(std::uint8_t current) const override;

 private:
  StatusCode ReadMode(const StagedFile& file);
  StatusCode ReadNvmeDevice();

  NVMeBootRecord nvme_ = {};
  bool nvme_enabled_ = false;  // stands in no record: staged, or whether any entry is enabled
};
