#include "config/boot/boot_mode.h"

#include <algorithm>

#include "config/options.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"

namespace {

constexpr OptionName kBootModeOption = {"--boot-mode", "-b"};

constexpr CheckResult kNoBootMode = {kInvalidParameter, "no boot mode"};

CheckResult ReadMode(const BootModes& modes, const std::string& word, BootMode& mode) {
  const auto found = std::find_if(modes.names.begin(), modes.names.end(),
                                  [&](const BootModeName& name) { return EqualNoCase(word, name.word); });
  if (found == modes.names.end()) return kNoBootMode;
  mode = found->mode;
  return {};
}

bool MustChange(const BootModes& modes, std::uint8_t current, BootMode wanted) {
  if (current == static_cast<std::uint8_t>(wanted)) return false;
  return !modes.leaves_unknown_mode ||
         std::any_of(modes.names.begin(), modes.names.end(), [current](const BootModeName& name) {
           return static_cast<std::uint8_t>(name.mode) == current;
         });
}

// Reading and changing the mode share one bracket.
StatusCode ChangeLibraryMode(const CommandRun& run, const BootModes& modes, BootMode wanted) {
  OutputBracket bracket(run);
  if (!bracket.IsOpen()) return kFileNotFound;
  const auto current = static_cast<std::uint8_t>(TORPI_GetBfsConfigMode());  // only the low 8 bits count
  if (!MustChange(modes, current, wanted)) return kSuccess;
  const LibraryStatus result = TORPI_SetBfsConfigMode(static_cast<std::uint32_t>(wanted));
  bracket.Close();
  return StatusOfCall(run, "Set boot mode", result, kUpdateFailed);
}

StatusCode CheckRom(const CommandRun& run, const FCProtocolEntry& fc, BootMode mode) {
  if (mode == BootMode::kBios) {
    return (fc.rom_flags & kBiosImage) != 0 ? kSuccess : run.Refuse(kNoRomBios, "Adapter has no ROM BIOS");
  }
  return (fc.rom_flags & kUefiImage) != 0 ? kSuccess : run.Refuse(kNoRomUefi, "Adapter has no ROM UEFI");
}

}  // namespace

StatusCode ChooseBootMode(CommandRun& run, const BootModes& modes, const FCProtocolEntry& fc,
                          BootMode& mode) {
  mode = BootMode::kBios;
  const StatusCode given =
      TakeOption(run, kBootModeOption, [&](const std::string& word) { return ReadMode(modes, word, mode); });
  if (given != kSuccess) return given;
  LogBootMode(run, mode);
  if (mode != BootMode::kBios && !HasBootModes(fc.pci)) {
    return run.Refuse(kBootModeNotSupported, "boot mode not supported for this adapter");
  }
  // Intended: without the option this turns the library back to the legacy mode, since a run has no other
  // memory of it.
  if (HasBootModes(fc.pci)) {
    if (const StatusCode status = ChangeLibraryMode(run, modes, mode); status != kSuccess) return status;
  }
  return CheckRom(run, fc, mode);
}

void AddBootMode(const BootModes& modes, BootMode mode, StagedValues& values) {
  for (const BootModeName& name : modes.names) {
    if (name.mode == mode) values[kBootModeKey] = std::to_string(name.staged);
  }
}

void LogBootMode(const CommandRun& run, BootMode mode) {
  run.Trace("uUserMode=%u", static_cast<unsigned>(mode));
}
