// Adapter models that differ by the subsystem too.
#include <gtest/gtest.h>

#include <initializer_list>

#include "framework/device_library/families.h"

namespace {

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
