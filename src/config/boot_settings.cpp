#include "config/boot_settings.h"

#include <algorithm>

#include "config/boot_options.h"
#include "config/record_fields.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"

namespace {

constexpr std::size_t kReportBytes = 2048;
constexpr std::size_t kBiosDrives = 4;

constexpr RecordField Flag(const char* key, std::size_t offset) {
  return {key, offset, sizeof(std::uint32_t), FieldKind::kUnsigned, {.limit = 1}};
}

// In the order in which a file's values are checked; the drives follow.
constexpr RecordField kFlags[] = {
    Flag("Disable_BIOS", offsetof(HBAParamsInfo, disable_bios)),
    Flag("Fabric_Assigned_Boot_Lun", offsetof(HBAParamsInfo, enable_fabric_assign_boot_lun)),
    Flag("Selectable_Boot", offsetof(HBAParamsInfo, enable_selectable_boot)),
    Flag("Selective_Login", offsetof(HBAParamsInfo, enable_selective_login)),
    Flag("Selective_LUN_Login", offsetof(HBAParamsInfo, enable_selective_lun)),
    Flag("World_Login", offsetof(HBAParamsInfo, force_world_login)),
};

// Of one drive; the key is the end of the file's key.
constexpr RecordField kDriveFields[] = {
    {kDriveNameKey, offsetof(BootDrive, port_name), sizeof(WorldWideName), FieldKind::kName},
    {kDriveLunKey, offsetof(BootDrive, lun), sizeof(std::uint16_t)},
};

}  // namespace

bool BootSettings::HasBootModes() const {
  return ::HasBootModes(Fc().pci);
}

bool BootSettings::ReadModeOption(const Words& words) {
  std::string word;
  if (!FindOption(words, "--boot-mode", "-b", word)) return true;
  const auto found = std::find_if(modes_.begin(), modes_.end(),
                                  [&](const BootModeName& name) { return EqualNoCase(word, name.word); });
  if (found == modes_.end()) {
    LogRefusal("--boot-mode", word, {kInvalidParameter, "no boot mode"});
    return false;
  }
  mode_ = found->mode;
  return true;
}

// Reading and changing the mode share one bracket.
StatusCode BootSettings::ChangeLibraryMode() const {
  OutputBracket bracket(node_.class_name);
  if (!bracket.IsOpen()) return kFileNotFound;
  const auto current = static_cast<std::uint8_t>(TORPI_GetBfsConfigMode());  // only the low 8 bits count
  if (!MustChangeFrom(current)) return kSuccess;
  const LibraryStatus result = TORPI_SetBfsConfigMode(static_cast<std::uint32_t>(mode_));
  bracket.Close();
  return StatusOfCall(node_.class_name, "Set boot mode", result, kUpdateFailed);
}

StatusCode BootSettings::CheckRom() const {
  if (mode_ == BootMode::kBios) return (Fc().rom_flags & kBiosImage) != 0 ? kSuccess : kNoRomBios;
  return (Fc().rom_flags & kUefiImage) != 0 ? kSuccess : kNoRomUefi;
}

StatusCode BootSettings::Prepare(const Words& words) {
  if (Command() == StagedCommand::kSet) return kSuccess;
  if (!ReadModeOption(words)) return kInvalidParameter;
  if (mode_ != BootMode::kBios && !HasBootModes()) return kBootModeNotSupported;
  // Without the option this deliberately turns the library back to the legacy mode: a run has no other memory
  // of it.
  if (HasBootModes()) {
    if (const StatusCode status = ChangeLibraryMode(); status != kSuccess) return status;
  }
  return CheckRom();
}

StatusCode BootSettings::ReadDevice() {
  record_ = {};
  return CallLibrary(node_.class_name, "Get boot device info", kReadFailed,
                     [&] { return TORPI_GetBootDeviceInfo(&Fc().handle, &record_, 0); });
}

StatusCode BootSettings::WriteDevice() {
  return CallLibrary(node_.class_name, "Set boot device info", kUpdateFailed,
                     [&] { return TORPI_SetBootDeviceInfo(&Fc().handle, &record_); });
}

void BootSettings::AddMode(StagedValues& values) const {
  for (const BootModeName& name : modes_) {
    if (name.mode == mode_) values[kBootModeKey] = std::to_string(name.staged);
  }
}

StagedValues BootSettings::AllValues() const {
  StagedValues values;
  AddMode(values);
  AddFieldValues(kFlags, &record_, values);
  for (std::size_t drive = 0; drive < std::size(kBootDrives); ++drive) {
    for (const RecordField& field : kDriveFields) {
      AddFieldValue(field, DriveKey(drive, field.key), &(record_.*kBootDrives[drive]), values);
    }
  }
  return values;
}

StatusCode BootSettings::ReadBootRecord(const StagedFile& file) {
  if (const StatusCode status = ReadFieldValues(kFlags, file, &record_); status != kSuccess) return status;
  for (std::size_t drive = 0; drive < std::size(kBootDrives); ++drive) {
    for (const RecordField& field : kDriveFields) {  // which have no rule to fail
      ReadFieldValue(field, DriveKey(drive, field.key), file, &(record_.*kBootDrives[drive]));
    }
  }
  return kSuccess;
}

void BootSettings::DriveLines(ReportText& text, std::size_t count) const {
  for (std::size_t drive = 0; drive < count; ++drive) {
    const BootDrive& boot_drive = record_.*kBootDrives[drive];
    const std::string label = "Drive " + std::to_string(drive);
    NameLine(text, (label + " WWPN").c_str(), boot_drive.port_name);
    NumberLine(text, (label + " LUN").c_str(), boot_drive.lun);
  }
}

void BootSettings::LoginLines(ReportText& text) const {
  FirstTextLine(text, "Adapter Driver", BoolText(record_.disable_bios == 0));
  FlagLine(text, "Selective Login", record_.enable_selective_login != 0);
  FlagLine(text, "Selective LUN Login", record_.enable_selective_lun != 0);
  FlagLine(text, "World Login", record_.force_world_login != 0);
  FlagLine(text, "Fabric Assigned Boot LUN", record_.enable_fabric_assign_boot_lun != 0);
}

StatusCode BootSettings::Display(Serializer& out, OutputMode mode, RebootField reboot) const {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayNoMemory(out, mode);
  if (mode_ == BootMode::kBios) {
    FirstTextLine(text, "Adapter BIOS", BoolText(record_.disable_bios == 0));
    FlagLine(text, "Selectable Boot", record_.enable_selectable_boot != 0);
    if (HasFabricAssignment(Fc().pci)) {
      FlagLine(text, "Fabric Assigned Boot LUN", record_.enable_fabric_assign_boot_lun != 0);
    }
    DriveLines(text, kBiosDrives);
  } else {
    LoginLines(text);
    DriveLines(text, std::size(kBootDrives));
  }
  return WriteText(out, mode, text, reboot);
}
