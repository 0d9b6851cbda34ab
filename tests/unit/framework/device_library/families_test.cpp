#include "framework/device_library/families.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
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

// A family by the device identifiers that belong to it, written out.
struct FamilyRow {
  const char* name;
  FamilyTest test;
  DeviceIds members;
  FamilySet bits = 0;  // 0: a rule that joins families
};

const FamilyRow kFamilies[] = {
    {"Aster", &IsDeviceGroupAster, {{0x3A02}, {0x3A12}, {0x5C02}, {0x5C12}}, kAster},
    {"Birch", &IsDeviceGroupBirch, {{0x3B40}, {0x3B41}}, kBirch},
    {"Cedar", &IsDeviceGroupCedar, {{0x7102}, {0x7122}, {0x7132}, {0x7932}}, kCedar},
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
      {0x3F48}},
     kDahlia},
    {"Elm", &IsDeviceGroupElm, {{0x3432}, {0x3C32}, {0x7132}, {0x7932}}, kElm},
    {"ElmOnly", &IsDeviceGroupElmOnly, {{0x3432}, {0x3C32}}, kElmOnly},
    {"FernOnly", &IsDeviceGroupFernOnly, {{0x7132}, {0x7932}}, kFernOnly},
    {"Cedar device", &IsDeviceCedar, {{0x7102}}, kCedarDevice},
    {"Ginkgo", &IsDeviceGinkgo, {{0x7122}}, kGinkgo},
    {"Hazel", &IsDeviceGroupHazel, {{0x3522}, {0x3D22}, {0x3D62}}, kHazel},
    {"Iris", &IsDeviceGroupIris, {{0x3150}, {0x3350}, {0x3850}, {0x3950}}, kIris},
    {"families with boot modes",
     &HasBootModes,
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
  for (const FamilyRow& family : kFamilies) {
    EXPECT_EQ(Members(family.test, 0x1C9E), family.members) << family.name;
  }
}

TEST(Families, HoldNoDeviceOfAnotherVendor) {
  for (const FamilyRow& family : kFamilies) {
    for (const int vendor_id : {0x0000, 0x9E1C, 0x1C9F, 0x1C9C, 0x9C9E, 0xFFFF}) {
      EXPECT_EQ(Members(family.test, static_cast<std::uint16_t>(vendor_id)), DeviceIds{})
          << family.name << ", vendor " << vendor_id;
    }
  }
}

TEST(Families, LookAtNothingButVendorAndDevice) {
  for (const FamilyRow& family : kFamilies) {
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

TEST(Families, HaveBitsForTheSameDevices) {
  for (const FamilyRow& family : kFamilies) {
    if (family.bits == 0) continue;
    for (std::uint32_t id = 0; id <= 0xFFFF; ++id) {
      PciIdentity pci = {};
      pci.vendor_id = 0x1C9E;
      pci.device_id = static_cast<std::uint16_t>(id);
      ASSERT_EQ(IsAnyOf(pci, family.bits), family.members.contains({id})) << family.name << ", device " << id;
    }
  }
}

TEST(Families, JoinToSets) {
  PciIdentity pci = {};
  pci.vendor_id = 0x1C9E;
  pci.device_id = 0x3B40;
  EXPECT_EQ(FamiliesOf(pci), kBirch | kDahlia);
  EXPECT_TRUE(IsAnyOf(pci, kHazel | kDahlia));
  EXPECT_FALSE(IsAnyOf(pci, kHazel | kIris));
  EXPECT_FALSE(IsAnyOf(pci, 0));
  pci.device_id = 0x7132;
  EXPECT_EQ(FamiliesOf(pci), kCedar | kFernOnly);
  EXPECT_EQ(kElm, kElmOnly | kFernOnly);
  pci.vendor_id = 0x1D4A;
  EXPECT_EQ(FamiliesOf(pci), 0u);
}

TEST(Families, SayWhatAnAdapterHas) {
  PciIdentity pci = {};
  for (std::uint32_t id = 0; id <= 0xFFFF; ++id) {
    pci.vendor_id = 0x1C9E;
    pci.device_id = static_cast<std::uint16_t>(id);
    const bool early = IsDeviceGroupAster(pci) || IsDeviceGroupBirch(pci) || IsDeviceGroupCedar(pci);
    const bool late = IsDeviceGroupHazel(pci) || IsDeviceGroupIris(pci) || IsDeviceGroupDahlia(pci);
    ASSERT_EQ(HasFabricAssignment(pci), !early) << id;
    ASSERT_EQ(HasCongestionManagement(pci), late) << id;
    ASSERT_EQ(HasManagementFirmware(pci), late) << id;
    pci.vendor_id = 0x1D4A;
    ASSERT_TRUE(HasFabricAssignment(pci)) << id;
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

// Adapter models that differ by the subsystem too.

struct Model {
  std::uint16_t device;
  std::uint16_t subsystem_vendor;
  std::uint16_t subsystem_device;
};

PciIdentity Identity(const Model& model, std::uint16_t vendor = 0x1C9E) {
  PciIdentity pci = {};
  pci.vendor_id = vendor;
  pci.device_id = model.device;
  pci.subsystem_vendor_id = model.subsystem_vendor;
  pci.subsystem_device_id = model.subsystem_device;
  return pci;
}

constexpr Model kElmMezz = {0x3432, 0x1C9E, 0x0A11};
constexpr Model kElmMezzNoLoop = {0x3432, 0x1D4A, 0x0A12};
constexpr Model kElmFixedRate = {0x3432, 0x1D4A, 0x0A13};
constexpr Model kHazelMezz32 = {0x3522, 0x1C9E, 0x0A14};
constexpr Model kHazelMezz16 = {0x3522, 0x1C9E, 0x0A15};

// The test holds for exactly these models among all listed here, their neighbours, and for no other vendor.
void ExpectOnly(bool (*test)(const PciIdentity&), std::initializer_list<Model> models) {
  for (const Model& model : {kElmMezz, kElmMezzNoLoop, kElmFixedRate, kHazelMezz32, kHazelMezz16}) {
    for (const std::uint16_t device : {std::uint16_t{0x3432}, std::uint16_t{0x3C32}, std::uint16_t{0x3522}}) {
      for (const std::uint16_t vendor : {std::uint16_t{0x1C9E}, std::uint16_t{0x1D4A}}) {
        const Model tried = {device, vendor, model.subsystem_device};
        bool expected = false;
        for (const Model& listed : models) {
          expected = expected || (listed.device == device && listed.subsystem_vendor == vendor &&
                                  listed.subsystem_device == model.subsystem_device);
        }
        EXPECT_EQ(test(Identity(tried)), expected)
            << std::hex << device << " " << vendor << " " << tried.subsystem_device;
        EXPECT_FALSE(test(Identity(tried, 0x1077)));
      }
    }
  }
}

TEST(ModelsTest, ElmMezzanine) {
  ExpectOnly(&IsMezzDeviceElm, {kElmMezz, kElmMezzNoLoop});
}
TEST(ModelsTest, ElmWithoutLoop) {
  ExpectOnly(&IsNoLoopDeviceElm, {kElmMezzNoLoop});
}
TEST(ModelsTest, ElmWithFixedRate) {
  ExpectOnly(&IsFixedRateDeviceElm, {kElmFixedRate});
}
TEST(ModelsTest, HazelMezzanine) {
  ExpectOnly(&IsMezz32DeviceHazel, {kHazelMezz32});
  ExpectOnly(&IsMezz16DeviceHazel, {kHazelMezz16});
}

TEST(ModelsTest, SixtyFourGigabits) {
  int models = 0;
  for (const std::uint16_t device :
       {std::uint16_t{0x3640}, std::uint16_t{0x3648}, std::uint16_t{0x3740}, std::uint16_t{0x3A40}}) {
    for (unsigned subsystem = 0; subsystem <= 0xFFFF; ++subsystem) {
      const Model model = {device, 0x4321, static_cast<std::uint16_t>(subsystem)};
      if (IsSixtyFourGigAdapter(Identity(model))) ++models;
      EXPECT_FALSE(IsSixtyFourGigAdapter(Identity(model, 0x1077)));
    }
  }
  EXPECT_EQ(models, 14);
  EXPECT_TRUE(IsSixtyFourGigAdapter(Identity({0x3640, 0, 0x0B01})));
  EXPECT_TRUE(IsSixtyFourGigAdapter(Identity({0x3648, 0, 0x0B07})));
}

TEST(ModelsTest, Encryption) {
  int models = 0;
  for (const std::uint16_t device : {std::uint16_t{0x3640}, std::uint16_t{0x3648}, std::uint16_t{0x3748}}) {
    for (const std::uint16_t vendor : {std::uint16_t{0x1C9E}, std::uint16_t{0x1D4A}, std::uint16_t{0x1234}}) {
      for (unsigned subsystem = 0; subsystem <= 0xFFFF; ++subsystem) {
        if (IsEncryptionAdapter(Identity({device, vendor, static_cast<std::uint16_t>(subsystem)}))) ++models;
      }
    }
  }
  EXPECT_EQ(models, 12);
  EXPECT_TRUE(IsEncryptionAdapter(Identity({0x3648, 0x1C9E, 0x0B01})));
  EXPECT_TRUE(IsEncryptionAdapter(Identity({0x3648, 0x1C9E, 0x0B06})));
  EXPECT_TRUE(IsEncryptionAdapter(Identity({0x3648, 0x1D4A, 0x0B11})));
  EXPECT_TRUE(IsEncryptionAdapter(Identity({0x3648, 0x1D4A, 0x0B16})));
  EXPECT_FALSE(IsEncryptionAdapter(Identity({0x3648, 0x1C9E, 0x0B01}, 0x1077)));
}

}  // namespace
