#include "framework/device_library/families.h"

namespace {

constexpr std::uint16_t kVendorId = 0x1C9E;

constexpr std::uint16_t Bit(int number) {
  return static_cast<std::uint16_t>(1u << number);
}

// The device identifier with the bits of `cleared` at zero; 0, which no family holds, for another vendor.
std::uint16_t DeviceId(const PciIdentity& pci, std::uint16_t cleared = 0) {
  if (pci.vendor_id != kVendorId) return 0;
  return static_cast<std::uint16_t>(pci.device_id & ~cleared);
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

bool IsDeviceGroupHazelIrisOrDahlia(const PciIdentity& pci) {
  return IsDeviceGroupHazel(pci) || IsDeviceGroupIris(pci) || IsDeviceGroupDahlia(pci);
}

bool HasFlashMemoBlock(const PciIdentity& pci) {
  return IsDeviceGroupElmOnly(pci) || IsDeviceGroupHazelIrisOrDahlia(pci);
}
