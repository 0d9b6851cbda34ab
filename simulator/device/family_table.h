// Adapter families: what a host file need not say.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "framework/device_library/flash_records.h"

namespace lab {

// Bits of Family::image_kinds, and the kinds of flash image.
enum class ImageKind : std::uint8_t { kMbi = 1, kBoardConfig = 2, kFirmwarePreload = 4, kPepConfig = 8 };

// Groups of flash components that a family has.
enum ComponentGroup : std::uint8_t { kCommonComponents = 1, kMpiPepComponents = 2, kSerdesComponents = 4 };

struct Family {
  const char* name;
  std::uint16_t device_id;  // passes the family test of this one and of as few others as the tests allow
  std::uint16_t subsystem_device_id;
  const char* model;
  std::uint32_t type;  // adapter type code
  std::uint32_t chip_revision;
  const char* multiboot_version;
  const char* firmware_version;
  const char* bios_version;
  const char* efi_version;
  const char* fcode_version;
  const char* driver_version;
  bool fcoe;  // protocol of the ports
  std::uint8_t personality;
  bool personality_call;  // answers the personality calls
  bool memo_block;        // has a flash memo block
  bool nvme;              // has a host NQN and a host identifier
  std::uint8_t supported_speeds;
  std::uint32_t speed;         // code, when the link is up
  std::uint32_t capabilities;  // see FCProtocolEntry
  std::uint8_t driver_flags;
  std::uint8_t image_kinds;
  std::uint8_t components;
};

inline constexpr std::uint16_t kSorvexVendorId = 0x1C9E;

// Null for a name that is no family.
const Family* FindFamily(std::string_view name);

// All families, the oldest first.
std::span<const Family> Families();

// A component of the flash by its name in host files and flash images.
struct FlashComponent {
  const char* name;
  ComponentVersion FlashComponentVersions::*field;
  ComponentGroup group;
  ComponentVersion initial;
};

// All components, and how many there are.
inline constexpr std::size_t kFlashComponentCount = 8;
extern const FlashComponent kFlashComponents[kFlashComponentCount];

// Null for a name that is no component.
const FlashComponent* FindFlashComponent(std::string_view name);

}  // namespace lab
