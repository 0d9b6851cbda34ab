#include "device/family_table.h"

#include "framework/device_library/port_entry.h"

namespace lab {
namespace {

constexpr std::uint32_t kCapable32 = kSecondCongestionStatistics | kSecondLinkTest;

constexpr std::uint8_t kOnlyMbi = 1;
constexpr std::uint8_t kMbiAndPreload = 1 | 4;
constexpr std::uint8_t kAllButPep = 1 | 2 | 4;
constexpr std::uint8_t kAllKinds = 1 | 2 | 4 | 8;

constexpr std::uint8_t kCommon = kCommonComponents;
constexpr std::uint8_t kWithPep = kCommonComponents | kMpiPepComponents;
constexpr std::uint8_t kWithSerdes = kWithPep | kSerdesComponents;

// Speed masks: 1 is 1 Gbps, 2 is 2, 4 is 10, 8 is 4, 0x10 is 8, 0x20 is 16, 0x40 is 32, 0x80 is 64.
// Speed codes: 4, 8 as named; 16 is 10 Gbps, 22 is 16, 50 is 32, 100 is 64.
// clang-format off
constexpr Family kFamilies[] = {
    // Name, device, subsystem, model, type, chip; multiboot, firmware, BIOS, EFI, FCode, driver;
    // FCoE, personality, personality calls, memo block, NVMe; speeds, speed, capabilities, driver flags, images,
    // components.
    {"aster", 0x3A02, 0x0510, "ZX040", 2, 3, "1.04.20", "5.09.00", "2.12", "2.30", "2.06", "3.2.14.0",
     false, 0, false, false, false, 0x0B, 4, 0, 0, kOnlyMbi, kCommon},
    {"birch", 0x3B41, 0x0620, "ZX080", 2, 2, "1.32.05", "8.08.03", "3.31", "6.33", "3.29", "4.1.20.0",
     false, 0, false, false, false, 0x1A, 8, 0, kCurrentRemotePorts, kMbiAndPreload, kCommon},
    {"cedar", 0x7102, 0x0710, "ZX081C", 6, 1, "1.20.11", "5.12.01", "3.14", "4.08", "3.10", "4.1.20.0",
     true, 1, false, false, false, 0x04, 16, 0, kCurrentRemotePorts, kOnlyMbi, kCommon},
    {"ginkgo", 0x7122, 0x0720, "ZX090C", 6, 1, "1.26.02", "5.16.04", "3.18", "4.21", "3.12", "4.1.20.0",
     true, 1, false, false, false, 0x04, 16, 0, kCurrentRemotePorts, kOnlyMbi, kCommon},
    {"elm", 0x3432, 0x0A01, "ZX100", 2, 2, "2.01.63", "9.12.01", "3.62", "7.08", "4.11", "5.4.81.2",
     false, 0, true, true, false, 0x38, 22, kFirstCongestionStatistics, kCurrentRemotePorts, kAllButPep, kCommon},
    {"fern", 0x7132, 0x0A21, "ZX101C", 6, 2, "2.01.60", "9.11.04", "3.60", "7.05", "4.10", "5.4.81.2",
     true, 1, true, false, false, 0x04, 16, 0, kCurrentRemotePorts, kAllButPep, kCommon},
    {"hazel", 0x3522, 0x0A31, "ZX320", 2, 1, "2.12.14", "9.15.05", "3.65", "7.24", "4.14", "5.4.81.2",
     false, 0, false, true, true, 0x70, 50, kCapable32, kCurrentRemotePorts, kAllKinds, kWithPep},
    {"iris", 0x3150, 0x0A41, "ZX325", 2, 1, "2.14.08", "9.15.06", "3.66", "7.25", "4.15", "5.4.81.2",
     false, 0, false, true, true, 0x70, 50, kCapable32, kCurrentRemotePorts | kSfpFirmwareUpdate, kAllKinds, kWithPep},
    {"dahlia", 0x3640, 0x0B01, "ZX640", 2, 1, "3.02.01", "9.18.02", "3.70", "7.42", "4.20", "5.4.81.2",
     false, 0, false, true, true, 0xE0, 100, kCapable32, kCurrentRemotePorts | kSfpFirmwareUpdate, kOnlyMbi,
     kWithSerdes},
};
// clang-format on

}  // namespace

const FlashComponent kFlashComponents[kFlashComponentCount] = {
    {"pep-firmware", &FlashComponentVersions::pep_firmware, kMpiPepComponents, {1, 4, 12}},
    {"pep-softrom", &FlashComponentVersions::pep_softrom, kMpiPepComponents, {1, 1, 3}},
    {"pep-board-config", &FlashComponentVersions::pep_board_config, kMpiPepComponents, {2, 0, 7}},
    {"preload-firmware-area", &FlashComponentVersions::preload_firmware_area, kCommonComponents, {9, 8, 2}},
    {"fc-board-config", &FlashComponentVersions::fc_board_config, kCommonComponents, {1, 0, 5}},
    {"mpi-firmware", &FlashComponentVersions::mpi_firmware, kMpiPepComponents, {1, 40, 0}},
    {"mpi-softrom", &FlashComponentVersions::mpi_softrom, kSerdesComponents, {1, 2, 0}},
    {"pcie-serdes", &FlashComponentVersions::pcie_serdes, kSerdesComponents, {2, 3, 1}},
};

const Family* FindFamily(std::string_view name) {
  for (const Family& family : kFamilies) {
    if (name == family.name) return &family;
  }
  return nullptr;
}

std::span<const Family> Families() {
  return kFamilies;
}

const FlashComponent* FindFlashComponent(std::string_view name) {
  for (const FlashComponent& component : kFlashComponents) {
    if (name == component.name) return &component;
  }
  return nullptr;
}

}  // namespace lab
