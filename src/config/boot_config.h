// The boot configuration: legacy BIOS or UEFI, and up to eight drives.
#pragma once

#include "config/boot_settings.h"

class BootConfig : public BootSettings {
 public:
  BootConfig();

  StatusCode CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const override;
  StatusCode ReadFile(const StagedFile& file) override;

 protected:
  bool MustChangeFrom(std::uint8_t current) const override;
};

// Messages that both forms of the boot configuration have.
inline constexpr StatusMessage kBootReadFailed = {kReadFailed, "Failed, Boot Config read failed"};
inline constexpr StatusMessage kBootUpdateFailed = {kUpdateFailed, "Failed, Boot Config update failed"};
inline constexpr StatusMessage kNotWithUefi = {
    kNotForBootMode, "Failed, Boot parameter not supported with UEFI boot mode option"};
inline constexpr StatusMessage kBootReadOnly = {kReadOnlyParameter, "Failed, Read-Only parameter"};

inline constexpr ReportFrame kBootFrame = {"BootConfigInfo", "BootConfig", "BootConfigList"};
