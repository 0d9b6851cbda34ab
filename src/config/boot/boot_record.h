// The boot record of a port: flags and drives, as both forms of the boot configuration read, stage, write and
// show them.
#pragma once

#include "config/boot/boot_mode.h"
#include "config/options.h"
#include "config/staged/staged_file.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/report_frame.h"
#include "framework/report_text.h"
#include "framework/status.h"

// What the documents of both forms have in common.
inline constexpr ReportFrame kBootFrame = {"BootConfigInfo", "BootConfig", "BootConfigList"};
inline constexpr StatusMessage kBootReadFailed = {kReadFailed, "Failed, Boot Config read failed"};
inline constexpr StatusMessage kBootUpdateFailed = {kUpdateFailed, "Failed, Boot Config update failed"};
inline constexpr StatusMessage kNotWithUefi = {
    kNotForBootMode, "Failed, Boot parameter not supported with UEFI boot mode option"};
inline constexpr StatusMessage kBootReadOnly = {kReadOnlyParameter, "Failed, Read-Only parameter"};

class BootRecord {
 public:
  explicit BootRecord(const FCProtocolEntry& fc) : fc_(fc) {}

  StatusCode ReadDevice(const CommandRun& run);
  StatusCode WriteDevice(const CommandRun& run) const;

  // Adds the flags and drives.
  void AddAll(StagedValues& values) const;

  // Puts the file's flags and drives over those of the record. kInvalidParameter at the first flag above 1.
  StatusCode ReadFile(const CommandRun& run, const StagedFile& file);

  // The report of the legacy and the UEFI mode.
  StatusCode Display(CommandRun& run, BootMode mode, RebootField reboot) const;

  // The lines before the drives in all modes but the legacy one.
  void LoginLines(ReportText& text) const;

  const HBAParamsInfo& Info() const { return info_; }

 private:
  const FCProtocolEntry& fc_;
  HBAParamsInfo info_ = {};
};

// Checks the options of the flags and adds what they change.
StatusCode TakeBootFlags(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode,
                         StagedValues& changes);

// The check of an option that only the modes other than the legacy one have.
CheckResult AllowOutsideBios(const FCProtocolEntry& fc, BootMode mode);
