// How a port boots the host: what the boot configuration and its extended form share.
#pragma once

#include <span>

#include "config/staged_settings.h"
#include "framework/device_library/config_records.h"

// A mode that a node knows: its word on the command line and its number in a staged file.
struct BootModeName {
  BootMode mode;
  const char* word;
  std::uint32_t staged;
};

class BootSettings : public StagedSettings {
 public:
  // For `get` and `setFile`: reads the mode that the user asks for, brings the library in line with it, and
  // checks that the adapter holds the boot code for it. `set` deliberately writes in whatever mode the
  // library is in.
  StatusCode Prepare(const Words& words) override;
  StatusCode ReadDevice() override;
  StatusCode WriteDevice() override;
  StagedValues AllValues() const override;
  StatusCode Display(Serializer& out, OutputMode mode, RebootField reboot) const override;

  BootMode Mode() const { return mode_; }
  const HBAParamsInfo& Record() const { return record_; }

 protected:
  BootSettings(const StagedNode& node, std::span<const BootModeName> modes)
      : StagedSettings(node), modes_(modes) {}

  // Whether a library that is in mode `current` has to change to Mode().
  virtual bool MustChangeFrom(std::uint8_t current) const = 0;

  // Adds the mode in force to `values`.
  void AddMode(StagedValues& values) const;
  void SetMode(BootMode mode) { mode_ = mode; }
  bool HasBootModes() const;  // more than the legacy one

  // Puts the file's flags and drives over those of the record.
  StatusCode ReadBootRecord(const StagedFile& file);

  // The lines ahead of the drives in all modes but the legacy one.
  void LoginLines(ReportText& text) const;

 private:
  bool ReadModeOption(const Words& words);
  StatusCode ChangeLibraryMode() const;
  StatusCode CheckRom() const;
  void DriveLines(ReportText& text, std::size_t count) const;

  std::span<const BootModeName> modes_;
  BootMode mode_ = BootMode::kBios;
  HBAParamsInfo record_ = {};
};
