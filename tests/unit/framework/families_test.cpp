#include "framework/device_library/families.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <ostream>
#include <set>

namespace {

struct DeviceId {
  std::uint32_t number;
  auto operator<=>(const DeviceId&) const = default;
};

void PrintTo(const DeviceId& id, std::ostream* out) {
  *out << "0x" << std::hex << std::setw(4) << std::setfill('0') << id.number << std::dec;
}

using DeviceIds = std::set<DeviceId>;
using FamilyTest = bool (*)(const PciIdentity&);

// All device identifiers that pass the test.
DeviceIds Members(FamilyTest test, std::uint16_t vendor_id) {
  DeviceIds members;
  for (std::uint32_t id = 0; id <= 0xFFFF; ++id) {
    PciIdentity pci = {};
    pci.vendor_id = vendor_id;
    pci.device_id = static_cast<std::uint16_t>(id);
    if (test(pci)) members.insert({id});
  }
  return members;
}

// A family is told by the device identifiers that belong to it, written out.
struct Family {
  const char* name;
  FamilyTest test;
  DeviceIds members;
};

const Family kFamilies[] = {
    {"Aster", &IsDeviceGroupAster, {{0x3A02}, {0x3A12}, {0x5C02}, {0x5C12}}},
    {"Birch", &IsDeviceGroupBirch, {{0x3B40}, {0x3B41}}},
    {"Cedar", &IsDeviceGroupCedar, {{0x7102}, {0x7122}, {0x7132}, {0x7932}}},
    {"Dahlia",
     &IsDeviceGroupDahlia,
     {{0x3640},
      {0x3648},
      {0x3740},
      {0x3748},
      {0x3A40},
      {0x3A48},
      {0x3B40},
      {0x3B48},
      {0x3E40},
      {0x3E48},
      {0x3F40},
      {0x3F48}}},
    {"Elm", &IsDeviceGroupElm, {{0x3432}, {0x3C32}, {0x7132}, {0x7932}}},
    {"ElmOnly", &IsDeviceGroupElmOnly, {{0x3432}, {0x3C32}}},
    {"FernOnly", &IsDeviceGroupFernOnly, {{0x7132}, {0x7932}}},
    {"Cedar device", &IsDeviceCedar, {{0x7102}}},
    {"Ginkgo", &IsDeviceGinkgo, {{0x7122}}},
    {"Hazel", &IsDeviceGroupHazel, {{0x3522}, {0x3D22}, {0x3D62}}},
    {"Iris", &IsDeviceGroupIris, {{0x3150}, {0x3350}, {0x3850}, {0x3950}}},
    {"Hazel, Iris or Dahlia",
     &IsDeviceGroupHazelIrisOrDahlia,
     {{0x3522},
      {0x3D22},
      {0x3D62},
      {0x3150},
      {0x3350},
      {0x3850},
      {0x3950},
      {0x3640},
      {0x3648},
      {0x3740},
      {0x3748},
      {0x3A40},
      {0x3A48},
      {0x3B40},
      {0x3B48},
      {0x3E40},
      {0x3E48},
      {0x3F40},
      {0x3F48}}},
    {"families with a flash memo block",
     &HasFlashMemoBlock,
     {{0x3432}, {0x3C32}, {0x3522}, {0x3D22}, {0x3D62}, {0x3150}, {0x3350},
      {0x3850}, {0x3950}, {0x3640}, {0x3648}, {0x3740}, {0x3748}, {0x3A40},
      {0x3A48}, {0x3B40}, {0x3B48}, {0x3E40}, {0x3E48}, {0x3F40}, {0x3F48}}},
};

TEST(Families, HoldTheirDevicesAndNoOthers) {
  for (const Family& family : kFamilies) {
    EXPECT_EQ(Members(family.test, 0x1C9E), family.members) << family.name;
  }
}

TEST(Families, HoldNoDeviceOfAnotherVendor) {
  for (const Family& family : kFamilies) {
    for (const int vendor_id : {0x0000, 0x9E1C, 0x1C9F, 0x1C9C, 0x9C9E, 0xFFFF}) {
      EXPECT_EQ(Members(family.test, static_cast<std::uint16_t>(vendor_id)), DeviceIds{})
          << family.name << ", vendor " << vendor_id;
    }
  }
}

TEST(Families, LookAtNothingButVendorAndDevice) {
  for (const Family& family : kFamilies) {
    PciIdentity pci = {};
    pci.vendor_id = 0x1C9E;
    pci.device_id = static_cast<std::uint16_t>(family.members.begin()->number);
    pci.subsystem_vendor_id = 0xFFFF;
    pci.subsystem_device_id = 0xFFFF;
    pci.link_capability = 0xFFFF;
    EXPECT_TRUE(family.test(pci)) << family.name;
    pci.device_id = 0x1234;
    pci.subsystem_vendor_id = 0x1C9E;
    pci.subsystem_device_id = static_cast<std::uint16_t>(family.members.begin()->number);
    EXPECT_FALSE(family.test(pci)) << family.name;
  }
}

TEST(Families, Overlap) {
  PciIdentity pci = {};
  pci.vendor_id = 0x1C9E;
  pci.device_id = 0x3B40;
  EXPECT_TRUE(IsDeviceGroupBirch(pci) && IsDeviceGroupDahlia(pci));
  pci.device_id = 0x7132;
  EXPECT_TRUE(IsDeviceGroupCedar(pci) && IsDeviceGroupElm(pci) && IsDeviceGroupFernOnly(pci));
  pci.device_id = 0x7122;
  EXPECT_TRUE(IsDeviceGroupCedar(pci) && IsDeviceGinkgo(pci));
  EXPECT_FALSE(IsDeviceCedar(pci));
}

}  // namespace
