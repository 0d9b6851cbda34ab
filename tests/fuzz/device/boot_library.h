// A port whose boot configuration a fuzz target fills, and the check of what the program shows of it.
#pragma once

#include "config/physical_port_boot_config_cmds_processor.h"
#include "config/physical_port_boot_config_ext_cmds_processor.h"
#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/boot_reference.h"

inline std::uint8_t boot_record[sizeof(HBAParamsInfo)];
inline std::uint8_t nvme_record[sizeof(NVMeBootRecord)];
inline LibraryStatus nvme_result;
inline std::uint8_t library_mode;
inline std::uint32_t mode_set;

std::uint32_t TORPI_GetBfsConfigMode() {
  return library_mode | 0xA5A5A500U;  // only the low 8 bits count
}
LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode) {
  Require(mode_set == 0);
  mode_set = mode;
  return kLibrarySuccess;
}
LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle*, HBAParamsInfo* out, std::uint32_t) {
  std::memcpy(static_cast<void*>(out), boot_record, sizeof boot_record);
  return kLibrarySuccess;
}
LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle*, NVMeBootRecord* out) {
  std::memcpy(static_cast<void*>(out), nvme_record, sizeof nvme_record);
  return nvme_result;
}

// Takes the family, the library's mode and the boot code of the adapter from the input.
inline void MakeBootPort(Input& input) {
  FCProtocolEntry& fc = *Host().fc;
  ChoosePciIdentity(fc, input.SpreadByte());
  const std::uint8_t modes = input.Byte();
  constexpr std::uint8_t kModes[] = {1, 2, 4, 0};
  library_mode = kModes[modes & 3];
  // Both images unless bits say otherwise; the others are not of interest.
  fc.rom_flags = (modes & 4) != 0 ? modes >> 3 : 0xFFFFFFFF;
  fc.interface_type = modes == 0xFF ? PortInterfaceType::kNpivVirtual : PortInterfaceType::kPhysical;
}

inline void CheckBoot(std::uint8_t choice, bool extended, reference::BootMode mode) {
  const bool xml = (choice & 1) == 0;
  const char* const word = mode == reference::BootMode::kBios   ? "bios"
                           : mode == reference::BootMode::kUefi ? "UEFI"
                                                                : "NVMe";
  const void* const nvme = nvme_result == kLibrarySuccess ? nvme_record : nullptr;
  const FCProtocolEntry* const fc = Host().fc;
  mode_set = 0;
  const std::string_view found =
      RunCommand(extended ? &PhysicalPortBootConfigExtCmdsProcessor : &PhysicalPortBootConfigCmdsProcessor,
                 "get", {PortIdentifier(), "--boot-mode", word}, xml);
  const reference::BootAnswer expected =
      extended ? reference::BootConfigExt(xml, fc, mode, library_mode, boot_record, nvme)
               : reference::BootConfig(xml, fc, mode, library_mode, boot_record);
  RequireSame(found, expected.document);
  Require(mode_set == expected.mode_set);
}
