#include "device/family_table.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "framework/device_library/families.h"

namespace {

struct FamilyTests {
  const char* name;
  const char* passes;  // one letter per test, in the order of Passed
};

std::string Passed(const PciIdentity& pci) {
  std::string passed;
  if (IsDeviceGroupAster(pci)) passed += 'a';
  if (IsDeviceGroupBirch(pci)) passed += 'b';
  if (IsDeviceGroupCedar(pci)) passed += 'c';
  if (IsDeviceGroupDahlia(pci)) passed += 'd';
  if (IsDeviceGroupElm(pci)) passed += 'e';
  if (IsDeviceGroupElmOnly(pci)) passed += 'E';
  if (IsDeviceGroupFernOnly(pci)) passed += 'F';
  if (IsDeviceCedar(pci)) passed += 'C';
  if (IsDeviceGinkgo(pci)) passed += 'G';
  if (IsDeviceGroupHazel(pci)) passed += 'h';
  if (IsDeviceGroupIris(pci)) passed += 'i';
  return passed;
}

TEST(Families, DefaultDeviceIdentifiersPassOnlyTheTestsOfTheirFamily) {
  constexpr FamilyTests kFamilies[] = {{"aster", "a"},   {"birch", "b"}, {"cedar", "cC"},
                                       {"ginkgo", "cG"}, {"elm", "eE"},  {"fern", "ceF"},
                                       {"hazel", "h"},   {"iris", "i"},  {"dahlia", "d"}};
  for (const FamilyTests& row : kFamilies) {
    const lab::Family* family = lab::FindFamily(row.name);
    ASSERT_NE(family, nullptr) << row.name;
    PciIdentity pci{};
    pci.vendor_id = lab::kSorvexVendorId;
    pci.device_id = family->device_id;
    EXPECT_EQ(Passed(pci), row.passes) << row.name;
  }
}

TEST(Families, VersionsAreNumbersWithPointsBetween) {
  const std::regex two("[0-9]{1,2}[.][0-9]{2}");
  const std::regex three("[0-9]{1,2}[.][0-9]{2}[.][0-9]{2}");
  const std::regex four("[0-9]{1,2}([.][0-9]{1,2}){3}");
  for (const lab::Family& family : lab::Families()) {
    EXPECT_TRUE(std::regex_match(family.multiboot_version, three)) << family.multiboot_version;
    EXPECT_TRUE(std::regex_match(family.firmware_version, three)) << family.firmware_version;
    EXPECT_TRUE(std::regex_match(family.bios_version, two)) << family.bios_version;
    EXPECT_TRUE(std::regex_match(family.efi_version, two)) << family.efi_version;
    EXPECT_TRUE(std::regex_match(family.fcode_version, two)) << family.fcode_version;
    EXPECT_TRUE(std::regex_match(family.driver_version, four)) << family.driver_version;
  }
}

}  // namespace
