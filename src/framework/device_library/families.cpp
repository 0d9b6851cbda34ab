#include "framework/device_library/families.h"

namespace {

constexpr std::uint16_t kVendorId = 0x1C9E;
constexpr std::uint16_t kPartnerVendorId = 0x1D4A;  // sells some models under its own subsystem identifiers

constexpr std::uint16_t Bit(int number) {
  return static_cast<std::uint16_t>(1u << number);
}

// The device identifier with the bits of `cleared` at zero; 0, which no family holds, for another vendor.
std::uint16_t DeviceId(const PciIdentity& pci, std::uint16_t cleared = 0) {
  if (pci.vendor_id != kVendorId) return 0;
  return static_cast<std::uint16_t>(pci.device_id & ~cleared);
}

bool IsModel(const PciIdentity& pci, std::uint16_t device_id, std::uint16_t subsystem_vendor_id,
             std::uint16_t subsystem_device_id) {
  return DeviceId(pci) == device_id && pci.subsystem_vendor_id == subsystem_vendor_id &&
         pci.subsystem_device_id == subsystem_device_id;
}

bool IsSubsystemWithin(const PciIdentity& pci, std::uint16_t first, std::uint16_t last) {
  return pci.subsystem_device_id >= first && pci.subsystem_device_id <= last;
}

}  // namespace

bool IsDeviceGroupAster(const PciIdentity& pci) {
  const std::uint16_t id = DeviceId(pci, Bit(4));
  return id == 0x3A02 || id == 0x5C02;
}

bool IsDeviceGroupBirch(const PciIdentity& pci) {
  const std::uint16_t id = DeviceId(pci);
  return id == 0x3B40 || id == 0x3B41;
}

bool IsDeviceGroupCedar(const PciIdentity& pci) {
  return DeviceId(pci, Bit(5)) == 0x7102 || DeviceId(pci, Bit(11)) == 0x7132;
}

bool IsDeviceGroupDahlia(const PciIdentity& pci) {
  const std::uint16_t id = DeviceId(pci, Bit(3) | Bit(8));
  return id == 0x3640 || id == 0x3A40 || id == 0x3E40;
}

bool IsDeviceGroupElm(const PciIdentity& pci) {
  return IsDeviceGroupElmOnly(pci) || IsDeviceGroupFernOnly(pci);
}

bool IsDeviceGroupElmOnly(const PciIdentity& pci) {
  return DeviceId(pci, Bit(11)) == 0x3432;
}

bool IsDeviceGroupFernOnly(const PciIdentity& pci) {
  return DeviceId(pci, Bit(11)) == 0x7132;
}

bool IsDeviceCedar(const PciIdentity& pci) {
  return DeviceId(pci) == 0x7102;
}

bool IsDeviceGinkgo(const PciIdentity& pci) {
  return DeviceId(pci) == 0x7122;
}

bool IsDeviceGroupHazel(const PciIdentity& pci) {
  return DeviceId(pci, Bit(11)) == 0x3522 || DeviceId(pci) == 0x3D62;
}

bool IsDeviceGroupIris(const PciIdentity& pci) {
  return DeviceId(pci, Bit(9)) == 0x3150 || DeviceId(pci, Bit(8)) == 0x3850;
}

bool IsMezzDeviceElm(const PciIdentity& pci) {
  return IsModel(pci, 0x3432, kVendorId, 0x0A11) || IsModel(pci, 0x3432, kPartnerVendorId, 0x0A12);
}

bool IsFixedRateDeviceElm(const PciIdentity& pci) {
  return IsModel(pci, 0x3432, kPartnerVendorId, 0x0A13);
}

bool IsNoLoopDeviceElm(const PciIdentity& pci) {
  return IsModel(pci, 0x3432, kPartnerVendorId, 0x0A12);
}

bool IsMezz32DeviceHazel(const PciIdentity& pci) {
  return IsModel(pci, 0x3522, kVendorId, 0x0A14);
}

bool IsMezz16DeviceHazel(const PciIdentity& pci) {
  return IsModel(pci, 0x3522, kVendorId, 0x0A15);
}

bool IsSixtyFourGigAdapter(const PciIdentity& pci) {
  return DeviceId(pci, Bit(3)) == 0x3640 && IsSubsystemWithin(pci, 0x0B01, 0x0B07);
}

bool IsEncryptionAdapter(const PciIdentity& pci) {
  if (DeviceId(pci) != 0x3648) return false;
  return (pci.subsystem_vendor_id == kVendorId && IsSubsystemWithin(pci, 0x0B01, 0x0B06)) ||
         (pci.subsystem_vendor_id == kPartnerVendorId && IsSubsystemWithin(pci, 0x0B11, 0x0B16));
}

FamilySet FamiliesOf(const PciIdentity& pci) {
  struct Member {
    Family family;
    bool (*is_member)(const PciIdentity& pci);
  };
  static constexpr Member kMembers[] = {
      {kAster, &IsDeviceGroupAster},   {kBirch, &IsDeviceGroupBirch},     {kCedar, &IsDeviceGroupCedar},
      {kDahlia, &IsDeviceGroupDahlia}, {kElmOnly, &IsDeviceGroupElmOnly}, {kFernOnly, &IsDeviceGroupFernOnly},
      {kCedarDevice, &IsDeviceCedar},  {kGinkgo, &IsDeviceGinkgo},        {kHazel, &IsDeviceGroupHazel},
      {kIris, &IsDeviceGroupIris},
  };
  FamilySet families = 0;
  for (const Member& member : kMembers) {
    if (member.is_member(pci)) families |= member.family;
  }
  return families;
}

bool IsAnyOf(const PciIdentity& pci, FamilySet families) {
  return (FamiliesOf(pci) & families) != 0;
}

bool HasBootModes(const PciIdentity& pci) {
  return IsAnyOf(pci, kHazel | kIris | kDahlia);
}

bool HasCongestionManagement(const PciIdentity& pci) {
  return IsAnyOf(pci, kHazel | kIris | kDahlia);
}

// Intended: an adapter of no family passes.
bool HasFabricAssignment(const PciIdentity& pci) {
  return !IsAnyOf(pci, kAster | kBirch | kCedar);
}

bool HasFlashMemoBlock(const PciIdentity& pci) {
  return IsAnyOf(pci, kElmOnly | kHazel | kIris | kDahlia);
}

bool HasManagementFirmware(const PciIdentity& pci) {
  return IsAnyOf(pci, kHazel | kIris | kDahlia);
}
