#include "congestion/guard.h"

#include <gtest/gtest.h>

#include "congestion/vocabulary.h"
#include "unit/congestion/fake_congestion_calls.h"

namespace {

constexpr GuardCheck kAll[] = {GuardCheck::kFamily, GuardCheck::kAnyGeneration, GuardCheck::kSecondGeneration,
                               GuardCheck::kPhysicalPort, GuardCheck::kEnabled};

class Guard : public testing::Test {
 protected:
  Guard() {
    Congestion() = {};
    fc_.pci.vendor_id = 0x1C9E;
    fc_.pci.device_id = 0x3522;
    fc_.capabilities = kSecondCongestionStatistics;
    fc_.interface_type = PortInterfaceType::kPhysical;
  }

  StatusCode Check(std::span<const GuardCheck> checks) const { return CheckGuard("Test", fc_, checks); }
  StatusCode CheckOne(GuardCheck check) const { return Check({&check, 1}); }

  FCProtocolEntry fc_ = {};
};

TEST_F(Guard, PassesAPortThatHasEverything) {
  EXPECT_EQ(Check(kAll), kSuccess);
  EXPECT_EQ(Congestion().calls, std::vector<std::string>{"enabled, preset to 0"});
}

TEST_F(Guard, WithoutChecksPassesAndAsksNothing) {
  fc_ = {};
  EXPECT_EQ(Check({}), kSuccess);
  EXPECT_TRUE(Congestion().calls.empty());
}

TEST_F(Guard, AnyGenerationTakesEitherBit) {
  fc_.capabilities = 1u << 23;
  EXPECT_EQ(CheckOne(GuardCheck::kAnyGeneration), kSuccess);
  EXPECT_EQ(CheckOne(GuardCheck::kSecondGeneration), kNotSupportedByDriver);
  fc_.capabilities = 1u << 26;
  EXPECT_EQ(CheckOne(GuardCheck::kAnyGeneration), kSuccess);
  EXPECT_EQ(CheckOne(GuardCheck::kSecondGeneration), kSuccess);
  fc_.capabilities = ~(1u << 23 | 1u << 26);
  EXPECT_EQ(CheckOne(GuardCheck::kAnyGeneration), kNotSupportedByDriver);
  EXPECT_EQ(CheckOne(GuardCheck::kSecondGeneration), kNotSupportedByDriver);
}

TEST_F(Guard, ChecksInTheOrderOfTheList) {
  fc_.capabilities = 0;
  fc_.interface_type = PortInterfaceType::kNpivVirtual;
  constexpr GuardCheck kCapabilityFirst[] = {GuardCheck::kAnyGeneration, GuardCheck::kPhysicalPort};
  constexpr GuardCheck kPortFirst[] = {GuardCheck::kPhysicalPort, GuardCheck::kAnyGeneration};
  EXPECT_EQ(Check(kCapabilityFirst), kNotSupportedByDriver);
  EXPECT_EQ(Check(kPortFirst), kVirtualPort);
  EXPECT_TRUE(Congestion().calls.empty());
}

TEST_F(Guard, FamilyIsHazelIrisOrDahlia) {
  for (const std::uint16_t device : std::initializer_list<std::uint16_t>{0x3522, 0x3150, 0x3640}) {
    fc_.pci.device_id = device;
    EXPECT_EQ(CheckOne(GuardCheck::kFamily), kSuccess) << device;
  }
  fc_.pci.device_id = 0x3432;
  EXPECT_EQ(CheckOne(GuardCheck::kFamily), kFeatureNotSupported);
}

TEST_F(Guard, MaintenanceModeHasAStatusOfItsOwnInOneOfTheTwoForms) {
  Congestion().enabled_result = 150;
  EXPECT_EQ(CheckOne(GuardCheck::kEnabled), kMaintenanceMode);
  EXPECT_EQ(CheckOne(GuardCheck::kEnabledOneStatus), kReadFailed);
  Congestion().enabled_result = 1;
  EXPECT_EQ(CheckOne(GuardCheck::kEnabled), kReadFailed);
  EXPECT_EQ(CheckOne(GuardCheck::kEnabledOneStatus), kReadFailed);
}

TEST_F(Guard, FlagOfZeroIsOff) {
  Congestion().enabled = 0;
  EXPECT_EQ(CheckOne(GuardCheck::kEnabled), kFeatureDisabled);
  EXPECT_EQ(CheckOne(GuardCheck::kEnabledOneStatus), kFeatureDisabled);
  Congestion().enabled = 255;
  EXPECT_EQ(CheckOne(GuardCheck::kEnabled), kSuccess);
}

}  // namespace
